$job = New-Object -ComObject Corvane.FaxJob
$job.DeviceId = 17
$job.PhoneNumber = "+49 30 1234567"
$job.RemoteStationId = "ACME"
$job.JobContents.GenerateContentsFromPageCounterInfo("A4,B&W", 2, 1, 2, 2)

$received = New-Object -ComObject Corvane.FaxJob
$received.Xml = $job.Xml
"$($received.JobContents.TotalPages) pages to $($received.PhoneNumber) ($($received.RemoteStationId))"
