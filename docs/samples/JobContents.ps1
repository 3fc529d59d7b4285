$contents = New-Object -ComObject Corvane.JobContents
$contents.GenerateContentsFromPageCounterInfo("A4,Color,Duplex,Staple,PCL", 6, 2, 12, 6)
"$($contents.TotalPages) pages, $($contents.TotalPagesColor) in colour"
"$($contents.JobPdl), $($contents.JobFinishing)"

# The codes for a database, and back.
"$($contents.DBCopyLines)  $($contents.DBPdl)  $($contents.DBFinishing)"
$restored = New-Object -ComObject Corvane.JobContents
$restored.GenerateContentsFromDBInfo($contents.DBCopyLines, $contents.JobOriginals, $contents.JobCopies,
    $contents.DBPdl, $contents.DBFinishing)
$restored.JobCopyLines.Item(0).Attributes
