Dim job, received

Set job = CreateObject("Corvane.PrintJob")
job.UserName = "j.doe"
job.JobName = "Report.docx"
job.DeviceAddress = "10.1.2.3"
job.JobContents.GenerateContentsFromPageCounterInfo "A4,Duplex,B&W,PCL", 6, 2, 12, 6

' Another component receives the job as XML.
Set received = CreateObject("Corvane.PrintJob")
received.Xml = job.Xml
WScript.Echo received.UserName & " printed " & received.JobName & " on " & received.DeviceAddress
WScript.Echo received.JobContents.TotalPages & " pages"
