' Reads many records into one object, without values of the record before.
Option Explicit

Dim job
Set job = CreateObject("Corvane.PrintJob")
ReadRecord "<PrintJob Version=""7.26""><UserName>a.berg</UserName><UserDomainName>SALES</UserDomainName></PrintJob>"
ReadRecord "<PrintJob Version=""5.1""><UserName>j.meyer</UserName></PrintJob>"

Sub ReadRecord(text)
    ' Forms below 6.0 and 7.26 do not have these elements: reading them leaves the properties unchanged.
    job.UserDomainName = ""
    job.DesktopUserName = ""
    job.DesktopUserDomainName = ""
    job.Xml = text
    WScript.Echo job.Version & ": " & job.UserName & ", domain '" & job.UserDomainName & "'"
End Sub
