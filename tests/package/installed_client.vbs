' Creates the classes named on the command line, and gets database codes, which need the installed catalogue.
Option Explicit
Dim i, created, job
created = 0
For i = 0 To WScript.Arguments.Count - 1
    If IsObject(CreateObject("Corvane." & WScript.Arguments(i))) Then created = created + 1
Next
WScript.Echo created & " classes"

Set job = CreateObject("Corvane.PrintJob")
job.JobContents.GenerateContentsFromPageCounterInfo "A4,Duplex,B&W,PostScript", 12, 2, 24, 12
WScript.Echo "database: " & job.JobContents.DBCopyLines
WScript.Echo "closed"
