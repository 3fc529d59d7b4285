' Creates every class and asks for database codes, which only the catalogue beside the library can give.
Option Explicit
Dim name, created, job
created = 0
For Each name In Array("CopyJob", "CopyLine", "CopyLines", "FaxJob", "JobContents", "LogicalPrinter", _
        "PolicyResults", "PrintJob", "ScanJob", "WindowsPrintInfo")
    If IsObject(CreateObject("Corvane." & name)) Then created = created + 1
Next
WScript.Echo created & " classes"

Set job = CreateObject("Corvane.PrintJob")
job.JobContents.GenerateContentsFromPageCounterInfo "A4,Duplex,B&W,PostScript", 12, 2, 24, 12
WScript.Echo "database: " & job.JobContents.DBCopyLines
WScript.Echo "closed"
