$DM_COPIES = 0x100
$DM_DUPLEX = 0x1000
$DMDUP_VERTICAL = 2

$info = New-Object -ComObject Corvane.WindowsPrintInfo
$info.DevModeFields = $DM_COPIES -bor $DM_DUPLEX
$info.DevModeCopies = 3
$info.DevModeDuplex = $DMDUP_VERTICAL
"$($info.JobInfoCopies) copies, duplex: $($info.IsDuplex)"
