$job = New-Object -ComObject Corvane.PrintJob
$job.UserName = "j.doe"
$job.JobName = "Report.docx"
$job.DeviceAddress = "10.1.2.3"
$job.JobContents.GenerateContentsFromPageCounterInfo("A4,Duplex,B&W,PCL", 6, 2, 12, 6)

# Another component receives the job as XML.
$received = New-Object -ComObject Corvane.PrintJob
$received.Xml = $job.Xml
"$($received.UserName) printed $($received.JobName) on $($received.DeviceAddress)"
"$($received.JobContents.TotalPages) pages"
