Dim line

Set line = CreateObject("Corvane.CopyLine")
line.PaperSize = "A4"
line.Attributes = "Duplex"
line.PagesBW = 3
line.PagesColor = 1
line.Sheets = 2
WScript.Echo line.PagesTotal & " pages on " & line.Sheets & " sheets, duplex: " & line.IsDuplex
WScript.Echo "paper code " & line.DBPaperSize & ", attribute bits " & line.DBAttributes
