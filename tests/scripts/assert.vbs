' Checks for the script tests. run_script.cmake puts this file before each VBScript test and a call of RunAndQuit
' after it. A test file defines RunTests, which calls the tests; each test first sets its name with Test.
Option Explicit

Const E_FAIL = &H80004005

Dim currentTest, passedChecks, failedChecks, keptTexts
currentTest = "(no test)"
passedChecks = 0
failedChecks = 0
keptTexts = 0

Sub Test(name)
    currentTest = name
End Sub

Sub Passed()
    passedChecks = passedChecks + 1
End Sub

Sub Failed(message)
    failedChecks = failedChecks + 1
    WScript.Echo currentTest & ": " & message
End Sub

Sub Check(condition, message)
    If condition Then Passed Else Failed message
End Sub

' Compares value and type: the text "7" is not the number 7.
Sub CheckEqual(actual, expected)
    If VarType(actual) <> VarType(expected) Then
        Failed "got a value of type " & VarType(actual) & ", expected type " & VarType(expected)
    ElseIf actual <> expected Then
        Failed "got """ & actual & """, expected """ & expected & """"
    Else
        Passed
    End If
End Sub

Sub CheckLong(actual, expected)
    CheckEqual actual, CLng(expected)
End Sub

Sub CheckContains(text, part)
    Check InStr(text, part) > 0, "'" & part & "' is missing in " & text
End Sub

Sub CheckLacks(text, part)
    Check InStr(text, part) = 0, "'" & part & "' should not be in " & text
End Sub

' Call it under On Error Resume Next with Err.Number and Err.Description, right after the call that must fail.
Sub CheckError(number, description, expectedNumber, expectedDescription)
    Check number = expectedNumber, "error 0x" & Hex(number) & ", expected 0x" & Hex(expectedNumber)
    Check description = expectedDescription, _
        "got the description """ & description & """, expected """ & expectedDescription & """"
End Sub

' The XML of a record. Also writes it to the folder of the schema test.
Function XmlOf(record)
    XmlOf = record.Xml
    KeepForSchemas XmlOf
End Function

Sub KeepForSchemas(xml)
    Dim folder, file
    folder = CreateObject("WScript.Shell").Environment("Process").Item("JOBOBJECTS_WRITTEN_XML")
    If folder = "" Then Exit Sub
    keptTexts = keptTexts + 1
    Set file = CreateObject("Scripting.FileSystemObject").CreateTextFile( _
        folder & "/" & WScript.ScriptName & keptTexts & ".xml", True, True)
    file.Write xml
    file.Close
End Sub

Sub RunAndQuit()
    On Error Resume Next
    RunTests
    If Err.Number <> 0 Then Failed "broke off with 0x" & Hex(Err.Number) & " " & Err.Description
    If failedChecks > 0 Or passedChecks = 0 Then
        WScript.Echo "FAILED " & failedChecks & " checks"
        WScript.Quit 1
    End If
    WScript.Echo "PASSED " & passedChecks & " checks"
    WScript.Quit 7
End Sub
