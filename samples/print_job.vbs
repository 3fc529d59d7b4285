' Turns page counter reports into print jobs, passes each job on as XML, and checks that the receiver gets the
' same job.
'
'   cscript //nologo print_job.vbs [--xml]
'
'   --xml   also shows the XML of each job
'
' The library must be registered (regsvr32 Tarnwick.dll). Exit code: 0, or 1 with a message if a step fails.
Option Explicit

' Bits of DevModeFields: the driver settings that are valid.
Const DM_COLOR = &H800
Const DM_DUPLEX = &H1000
Const PAGE_ORDER_BOOKLET = 2

' Separates the values of a repeated key.
Const VALUE_SEPARATOR = "|"

Dim exitCode

On Error Resume Next
exitCode = Main()
If Err.Number <> 0 Then
    WScript.Echo "Failed: " & Err.Description & " (0x" & Hex(Err.Number) & ")"
    exitCode = 1
End If
WScript.Quit exitCode

Function Main()
    Dim reports, i
    Set reports = ReadReports(ScriptFolder() & "\data\page_counter_reports.txt")
    For i = 0 To reports.Count - 1
        PassOnJob reports(i)
    Next
    WScript.Echo "All " & reports.Count & " jobs agree."
    Main = 0
End Function

Sub PassOnJob(report)
    Dim sent, received, xml
    Set sent = JobFromReport(report)
    xml = sent.Xml

    Set received = CreateObject("Corvane.PrintJob")
    received.Xml = xml

    CheckSameJob sent, received
    ShowJob received, report
    If HasOption("--xml") Then WScript.Echo xml
    WScript.Echo ""
End Sub

' --- Filling a print job -------------------------------------------------------------------------------

Function JobFromReport(report)
    Dim job, owner
    owner = Split(report("User"), "\")

    Set job = CreateObject("Corvane.PrintJob")
    job.JobGuid = "{7E0D1C5A-2F4B-4E0C-9A55-" & Right("00000000000" & report("Size"), 12) & "}"
    job.UserDomainName = owner(0)
    job.UserName = owner(1)
    job.JobTimeLocal = CDate(report("Time"))
    job.JobTimeUtc = CDate(report("Utc"))
    job.JobSize = CLng(report("Size"))
    job.JobName = report("Document")
    job.MachineName = report("Machine")
    job.ApplicationName = report("Application")
    SetLogTarget job, report("Target")
    GenerateContents job.JobContents, report
    ' Plain assignment, not Set: the properties have propput, not propputref.
    job.WindowsPrintInfo = PrintInfoFromReport(report)
    If report.Exists("Policy") Then job.PolicyResults = PolicyFromReport(report)
    Set JobFromReport = job
End Function

Sub SetLogTarget(job, target)
    Dim words
    words = Split(target, " ")
    Select Case words(0)
        Case "LogicalPrinter"
            job.LogicalPrinterGuid = words(1)
        Case "Device"
            job.DeviceId = CLng(words(1))
        Case "DeviceAddress"
            job.DeviceAddress = words(1)
    End Select
End Sub

' A report with one paper size has totals, one with several sizes has copy lines.
Sub GenerateContents(contents, report)
    If report.Exists("Line") Then
        GenerateMixedContents contents, report
    Else
        contents.GenerateContentsFromPageCounterInfo report("Attributes"), CLng(report("Originals")), _
            CLng(report("Copies")), CLng(report("Pages")), CLng(report("Sheets"))
    End If
End Sub

Sub GenerateMixedContents(contents, report)
    Dim pageAttributes, line, fields
    pageAttributes = contents.GenerateGeneralContentsFromPageCounterInfo(report("Attributes"), _
        CLng(report("Originals")), CLng(report("Copies")), False)
    For Each line In Split(report("Line"), VALUE_SEPARATOR)
        fields = Split(line, ";")
        contents.GenerateCopyLineFromPageCounterInfo fields(0), CLng(fields(1)), CLng(fields(2)), _
            CLng(fields(3)), CLng(fields(4))
    Next
End Sub

Function PrintInfoFromReport(report)
    Dim info
    Set info = CreateObject("Corvane.WindowsPrintInfo")
    info.JobInfoOriginals = CLng(report("Originals"))
    info.JobInfoPages = CLng(report("Originals")) * CLng(report("Copies"))
    If report.Exists("Duplex") Then
        info.DevModeFields = info.DevModeFields Or DM_DUPLEX
        info.DevModeDuplex = CLng(report("Duplex"))
    End If
    If report.Exists("Color") Then
        info.DevModeFields = info.DevModeFields Or DM_COLOR
        info.DevModeColor = CLng(report("Color"))
    End If
    If report.Exists("Booklet") Then info.AttributeInfoPageOrderFlags = PAGE_ORDER_BOOKLET
    Set PrintInfoFromReport = info
End Function

Function PolicyFromReport(report)
    Dim policy, violation
    Set policy = CreateObject("Corvane.PolicyResults")
    policy.PolicyId = CLng(FirstWord(report("Policy")))
    policy.PolicyName = AfterFirstWord(report("Policy"))
    If report.Exists("Violation") Then
        For Each violation In Split(report("Violation"), VALUE_SEPARATOR)
            policy.AddRuleViolation CLng(FirstWord(violation)), AfterFirstWord(violation)
        Next
    End If
    Set PolicyFromReport = policy
End Function

' --- Comparing what was sent with what was received ------------------------------------------------------

Sub CheckSameJob(sent, received)
    CheckSame "Xml", sent.Xml, received.Xml
    CheckSame "JobName", sent.JobName, received.JobName
    CheckSame "UserDomainName", sent.UserDomainName, received.UserDomainName
    CheckSame "UserName", sent.UserName, received.UserName
    CheckSame "JobTimeLocal", TimeText(sent.JobTimeLocal), TimeText(received.JobTimeLocal)
    CheckSame "JobTimeUtc", TimeText(sent.JobTimeUtc), TimeText(received.JobTimeUtc)
    CheckSame "JobSize", sent.JobSize, received.JobSize
    CheckSame "LogTargetType", sent.LogTargetType, received.LogTargetType
    CheckSame "DBCopyLines", sent.JobContents.DBCopyLines, received.JobContents.DBCopyLines
    CheckSame "JobPdl", sent.JobContents.JobPdl, received.JobContents.JobPdl
    CheckSame "JobFinishing", sent.JobContents.JobFinishing, received.JobContents.JobFinishing
    CheckSame "IsDuplex", sent.WindowsPrintInfo.IsDuplex, received.WindowsPrintInfo.IsDuplex
End Sub

Sub CheckSame(what, sentValue, receivedValue)
    If sentValue <> receivedValue Then
        Err.Raise vbObjectError + 1, "print_job.vbs", _
            what & ": sent '" & sentValue & "', received '" & receivedValue & "'"
    End If
End Sub

' --- Showing a job ---------------------------------------------------------------------------------------

Sub ShowJob(job, report)
    Dim contents
    Set contents = job.JobContents
    WScript.Echo job.JobName
    ShowItem "user", job.UserDomainName & "\" & job.UserName & " on " & job.MachineName & ", " & _
        TimeText(job.JobTimeLocal)
    ShowItem "log target", LogTargetText(job)
    ShowItem "contents", "originals " & contents.JobOriginals & ", copies " & contents.JobCopies & ", " & _
        contents.JobPdl & FinishingText(contents)
    ShowCopyLines contents.JobCopyLines
    ShowItem "database", contents.DBCopyLines
    ShowItem "settings", SettingsText(job.WindowsPrintInfo)
    If report.Exists("Policy") Then ShowItem "policy", PolicyText(job.PolicyResults)
    ShowItem "unknown", UnknownWords(report("Attributes"))
End Sub

Sub ShowItem(label, text)
    If text <> "" Then WScript.Echo "  " & Left(label & Space(12), 12) & text
End Sub

Sub ShowCopyLines(copyLines)
    Dim line, i
    For i = 0 To copyLines.Count - 1
        Set line = copyLines.Item(i)
        ShowItem "  " & line.PaperSize, line.Sheets & " sheets: " & line.PagesBW & " black-and-white, " & _
            line.PagesColor & " colour, " & line.PagesBlank & " blank (" & line.Attributes & ")"
    Next
End Sub

Function LogTargetText(job)
    Select Case job.LogTargetType
        Case 1
            LogTargetText = "logical printer " & job.LogicalPrinterGuid
        Case 2
            LogTargetText = "device " & job.DeviceId
        Case 3
            LogTargetText = "device at " & job.DeviceAddress
        Case Else
            LogTargetText = "none"
    End Select
End Function

Function FinishingText(contents)
    FinishingText = ""
    If contents.JobFinishing <> "" Then FinishingText = ", finishing: " & contents.JobFinishing
End Function

Function SettingsText(info)
    Dim text
    text = info.JobInfoPages & " pages"
    If info.IsDuplex Then text = text & ", duplex setting " & info.DevModeDuplex
    If info.IsColor Then text = text & ", colour setting " & info.DevModeColor
    If info.IsBooklet Then text = text & ", booklet"
    SettingsText = text
End Function

Function PolicyText(policy)
    PolicyText = policy.PolicyId & " " & policy.PolicyName & ": "
    If Not policy.PolicyViolated Then
        PolicyText = PolicyText & "kept"
    ElseIf policy.InformOnlyViolations Then
        PolicyText = PolicyText & "violates " & policy.RuleViolations & ", inform only"
    Else
        PolicyText = PolicyText & "violates " & policy.RuleViolations
    End If
End Function

' The words of the report that are not in the catalogue of job attributes.
Function UnknownWords(attributes)
    Dim word
    UnknownWords = ""
    For Each word In Split(attributes, ",")
        If Not IsKnownWord(word) Then UnknownWords = UnknownWords & " " & word
    Next
    UnknownWords = Trim(UnknownWords)
End Function

' Scripts cannot call MatchAttributes, which has typed out-parameters. Instead, generate contents from the word
' alone: a known word always changes them.
Function IsKnownWord(word)
    Dim contents, pageAttributes
    Set contents = CreateObject("Corvane.JobContents")
    contents.GenerateDefaultPageAttributes = False
    pageAttributes = contents.GenerateGeneralContentsFromPageCounterInfo(word, 1, 1, False)
    contents.GenerateCopyLineFromPageCounterInfo word, 1, 0, 0, 1
    IsKnownWord = pageAttributes <> "" Or contents.JobFinishing <> "" Or _
        LCase(contents.JobPdl) = LCase(word) Or contents.JobCopyLines.Item(0).PaperSize = word
End Function

' --- Reading the reports -----------------------------------------------------------------------------------

' Returns the reports in file order: a dictionary from 0, 1, ... to a dictionary of keys and values.
Function ReadReports(path)
    Dim reports, report, file, line
    Set reports = CreateObject("Scripting.Dictionary")
    Set file = CreateObject("Scripting.FileSystemObject").OpenTextFile(path, 1)
    Do Until file.AtEndOfStream
        line = Trim(file.ReadLine)
        If Left(line, 9) = "Document:" Then
            Set report = CreateObject("Scripting.Dictionary")
            reports.Add reports.Count, report
        End If
        If line <> "" And Left(line, 1) <> "#" Then AddValue report, line
    Loop
    file.Close
    Set ReadReports = reports
End Function

Sub AddValue(report, line)
    Dim colon, key, value
    colon = InStr(line, ":")
    key = Left(line, colon - 1)
    value = Trim(Mid(line, colon + 1))
    If report.Exists(key) Then
        report(key) = report(key) & VALUE_SEPARATOR & value
    Else
        report.Add key, value
    End If
End Sub

' --- Small helpers -----------------------------------------------------------------------------------------

Function FirstWord(text)
    FirstWord = Left(text, InStr(text, " ") - 1)
End Function

Function AfterFirstWord(text)
    AfterFirstWord = Mid(text, InStr(text, " ") + 1)
End Function

' Independent of the user's date format.
Function TimeText(value)
    TimeText = Year(value) & "-" & TwoDigits(Month(value)) & "-" & TwoDigits(Day(value)) & " " & _
        TwoDigits(Hour(value)) & ":" & TwoDigits(Minute(value)) & ":" & TwoDigits(Second(value))
End Function

Function TwoDigits(number)
    TwoDigits = Right("0" & number, 2)
End Function

Function HasOption(name)
    Dim i
    HasOption = False
    For i = 0 To WScript.Arguments.Count - 1
        If WScript.Arguments(i) = name Then HasOption = True
    Next
End Function

Function ScriptFolder()
    ScriptFolder = CreateObject("Scripting.FileSystemObject").GetParentFolderName(WScript.ScriptFullName)
End Function
