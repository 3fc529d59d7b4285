' Writes one CSV row for each print job of a folder. Reports and skips files that are not print jobs.
'
'   cscript //nologo folder_to_csv.vbs FOLDER OUTPUT.csv
Option Explicit

Dim fileSystem, csv, file
Set fileSystem = CreateObject("Scripting.FileSystemObject")
Set csv = fileSystem.CreateTextFile(WScript.Arguments(1), True, True) ' UTF-16, for all characters
csv.WriteLine "File,User,Document,Pages,Sheets"
For Each file In fileSystem.GetFolder(WScript.Arguments(0)).Files
    If LCase(fileSystem.GetExtensionName(file.Name)) = "xml" Then AddRow file
Next
csv.Close

Sub AddRow(file)
    Dim job, problem
    Set job = CreateObject("Corvane.PrintJob")
    problem = ReadFile(job, file)
    If problem <> "" Then
        WScript.Echo file.Name & ": " & problem
        Exit Sub
    End If
    csv.WriteLine Quoted(file.Name) & "," & Quoted(job.UserName) & "," & Quoted(job.JobName) & "," & _
        job.JobContents.TotalPages & "," & SheetsOf(job.JobContents.JobCopyLines)
End Sub

' Reads a UTF-8 or UTF-16 file into the record. Returns the problem, or "".
Function ReadFile(job, file)
    Dim document
    Set document = WScript.CreateObject("MSXML2.DOMDocument")
    document.async = False
    document.preserveWhiteSpace = True
    If Not document.load(file.Path) Then
        ReadFile = "not well-formed XML"
        Exit Function
    End If
    On Error Resume Next
    job.Xml = document.documentElement.xml
    ReadFile = Err.Description
End Function

Function SheetsOf(lines)
    Dim i
    For i = 0 To lines.Count - 1
        SheetsOf = SheetsOf + lines.Item(i).Sheets
    Next
End Function

Function Quoted(text)
    Quoted = """" & Replace(text, """", """""") & """"
End Function
