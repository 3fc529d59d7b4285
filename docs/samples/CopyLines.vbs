Dim contents, lines, line, i

Set contents = CreateObject("Corvane.JobContents")
contents.GenerateCopyLineFromPageCounterInfo "Letter,Color", 0, 2, 0, 2
contents.GenerateCopyLineFromPageCounterInfo "A4,Duplex", 6, 0, 0, 3

Set lines = contents.JobCopyLines
For i = 0 To lines.Count - 1
    Set line = lines.Item(i)
    WScript.Echo line.PaperSize & ": " & line.PagesTotal & " pages on " & line.Sheets & " sheets"
Next
WScript.Echo lines.TotalPages & " pages, " & lines.TotalPagesColor & " of them in colour"
