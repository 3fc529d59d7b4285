' Reads records of any class from a text, with a form feed between them, and writes them again: exchange.vbs IN OUT
' CODES. CODES receives what the records and their errors give besides XML. exchange.js does the same.
Option Explicit

Dim files
Set files = CreateObject("Scripting.FileSystemObject")

Function ReadText(path)
    Dim file
    Set file = files.OpenTextFile(path, 1, False, -1)
    ReadText = file.ReadAll
    file.Close
End Function

Sub WriteText(path, text)
    Dim file
    Set file = files.CreateTextFile(path, True, True)
    file.Write text
    file.Close
End Sub

Function ClassOf(xml)
    Dim i
    For i = 2 To Len(xml)
        If InStr(" />", Mid(xml, i, 1)) > 0 Then Exit For
    Next
    ClassOf = Mid(xml, 2, i - 2)
    If ClassOf = "JobCopyLines" Then ClassOf = "CopyLines"
End Function

Function CodesOf(name, record)
    CodesOf = name & "|"
    If name = "JobContents" Then
        CodesOf = CodesOf & record.DBCopyLines & "|" & record.DBPdl & "|" & record.DBFinishing & "|"
        CodesOf = CodesOf & record.TotalPages & "|"
    End If
    On Error Resume Next
    record.Xml = "<broken><"
    CodesOf = CodesOf & Err.Number & "|" & Err.Description & vbFormFeed
    On Error Goto 0
End Function

Dim texts, i, record, written, codes, name
texts = Split(ReadText(WScript.Arguments(0)), vbFormFeed)
written = ""
codes = ""
For i = 0 To UBound(texts)
    name = ClassOf(texts(i))
    Set record = CreateObject("Corvane." & name)
    record.Xml = texts(i)
    If i > 0 Then written = written & vbFormFeed
    written = written & record.Xml
    codes = codes & CodesOf(name, record)
Next
WriteText WScript.Arguments(1), written
WriteText WScript.Arguments(2), codes
WScript.Echo UBound(texts) + 1 & " records"
