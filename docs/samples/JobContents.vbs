Dim contents, restored

Set contents = CreateObject("Corvane.JobContents")
contents.GenerateContentsFromPageCounterInfo "A4,Color,Duplex,Staple,PCL", 6, 2, 12, 6
WScript.Echo contents.TotalPages & " pages, " & contents.TotalPagesColor & " in colour"
WScript.Echo contents.JobPdl & ", " & contents.JobFinishing

' The codes for a database, and back.
WScript.Echo contents.DBCopyLines & "  " & contents.DBPdl & "  " & contents.DBFinishing
Set restored = CreateObject("Corvane.JobContents")
restored.GenerateContentsFromDBInfo contents.DBCopyLines, contents.JobOriginals, contents.JobCopies, _
    contents.DBPdl, contents.DBFinishing
WScript.Echo restored.JobCopyLines.Item(0).Attributes
