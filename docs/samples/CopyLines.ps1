$contents = New-Object -ComObject Corvane.JobContents
$contents.GenerateCopyLineFromPageCounterInfo("Letter,Color", 0, 2, 0, 2)
$contents.GenerateCopyLineFromPageCounterInfo("A4,Duplex", 6, 0, 0, 3)

$lines = $contents.JobCopyLines
for ($i = 0; $i -lt $lines.Count; $i++) {
    $line = $lines.Item($i)
    "$($line.PaperSize): $($line.PagesTotal) pages on $($line.Sheets) sheets"
}
"$($lines.TotalPages) pages, $($lines.TotalPagesColor) of them in colour"
