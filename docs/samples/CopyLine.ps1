$line = New-Object -ComObject Corvane.CopyLine
$line.PaperSize = "A4"
$line.Attributes = "Duplex"
$line.PagesBW = 3
$line.PagesColor = 1
$line.Sheets = 2
"$($line.PagesTotal) pages on $($line.Sheets) sheets, duplex: $($line.IsDuplex)"
"paper code $($line.DBPaperSize), attribute bits $($line.DBAttributes)"
