' Writes a record for a component that knows an older form, and turns an older record into the newest form.
Option Explicit

Dim job, newest
Set job = CreateObject("Corvane.PrintJob")
job.Xml = "<PrintJob Version=""6.0""/>" ' the record takes the version that it reads
job.UserName = "a.berg"
job.DesktopUserName = "a.berg-admin" ' not part of form 6.0
WScript.Echo job.Version & ": " & InStr(job.Xml, "DesktopUserName")

job.Xml = "<PrintJob Version=""4.1""><UserName>j.meyer</UserName><LogicalPrinterGuid>P1</LogicalPrinterGuid></PrintJob>"
WScript.Echo job.Version & ": " & job.LogicalPrinterGuid

' Copy the properties: with only its Version changed, the old text would lose LogicalPrinterGuid.
Set newest = CreateObject("Corvane.PrintJob")
newest.UserName = job.UserName
newest.LogicalPrinterGuid = job.LogicalPrinterGuid
newest.JobContents.Xml = job.JobContents.Xml
WScript.Echo newest.Version & ": " & newest.LogicalPrinterGuid
