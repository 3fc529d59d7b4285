$job = New-Object -ComObject Corvane.CopyJob
$job.DeviceId = 17
$job.IdentifierData = "4711"
$job.JobContents.GenerateContentsFromPageCounterInfo("A4,B&W", 3, 5, 15, 15)

$received = New-Object -ComObject Corvane.CopyJob
$received.Xml = $job.Xml
"card $($received.IdentifierData) made $($received.JobContents.JobCopies) copies on device $($received.DeviceId)"
