Dim job, received

Set job = CreateObject("Corvane.FaxJob")
job.DeviceId = 17
job.PhoneNumber = "+49 30 1234567"
job.RemoteStationId = "ACME"
job.JobContents.GenerateContentsFromPageCounterInfo "A4,B&W", 2, 1, 2, 2

Set received = CreateObject("Corvane.FaxJob")
received.Xml = job.Xml
WScript.Echo received.JobContents.TotalPages & " pages to " & received.PhoneNumber & _
    " (" & received.RemoteStationId & ")"
