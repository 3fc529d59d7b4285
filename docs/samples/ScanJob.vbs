Dim job, received

Set job = CreateObject("Corvane.ScanJob")
job.DeviceId = 17
job.Destination = "archive@example.com"
job.JobContents.GenerateContentsFromPageCounterInfo "A4,Color", 8, 1, 8, 8

Set received = CreateObject("Corvane.ScanJob")
received.Xml = job.Xml
WScript.Echo received.JobContents.TotalPages & " pages to " & received.Destination
