Dim job, received

Set job = CreateObject("Corvane.CopyJob")
job.DeviceId = 17
job.IdentifierData = "4711"
job.JobContents.GenerateContentsFromPageCounterInfo "A4,B&W", 3, 5, 15, 15

Set received = CreateObject("Corvane.CopyJob")
received.Xml = job.Xml
WScript.Echo "card " & received.IdentifierData & " made " & received.JobContents.JobCopies & _
    " copies on device " & received.DeviceId
