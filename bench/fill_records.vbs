' Fills a print job as often as the argument says and gets its XML each time. Exit code 1 if all went well: cscript
' returns 0 after an error.
Option Explicit

Dim job, i
Set job = CreateObject("Corvane.PrintJob")
For i = 1 To CLng(WScript.Arguments(0))
    Fill
Next
WScript.Quit 1

Sub Fill()
    Dim xml
    job.JobGuid = "{7E0D1C5A-2F4B-4E0C-9A55-000000000001}"
    job.CustomerCode = "C-4711"
    job.UserName = "jdoe"
    job.UserDomainName = "SALES"
    job.JobTimeLocal = #2024-02-29 12:34:56#
    job.JobTimeUtc = #2024-02-29 11:34:56#
    job.JobTimeLocalMsec = 789
    job.JobSize = 123456
    job.JobName = "Quarterly report.docx"
    job.JobFileName = "00042.SPL"
    job.JobDataType = "NT EMF 1.008"
    job.LogicalPrinterGuid = "{2B1C7C56-90B2-4F4E-A8B4-0C5A2F9E1D33}"
    job.MachineName = "WS-0815"
    job.ApplicationName = "editor.exe"
    job.ApplicationDescription = "Editor"
    job.VpnConnected = True
    job.TonerCoverage = 5
    job.TonerSaving = 2
    job.DataSource = 1
    job.FromSystemUser = False
    job.DesktopUserName = "jdoe"
    job.DesktopUserDomainName = "SALES"
    job.JobContentsSource = 1
    job.JobContentsDiscardCount = 0
    job.PageCounterErrorMessage = ""
    job.PageCounterResult = "counted"
    xml = job.Xml
End Sub
