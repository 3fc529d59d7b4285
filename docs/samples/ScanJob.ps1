$job = New-Object -ComObject Corvane.ScanJob
$job.DeviceId = 17
$job.Destination = "archive@example.com"
$job.JobContents.GenerateContentsFromPageCounterInfo("A4,Color", 8, 1, 8, 8)

$received = New-Object -ComObject Corvane.ScanJob
$received.Xml = $job.Xml
"$($received.JobContents.TotalPages) pages to $($received.Destination)"
