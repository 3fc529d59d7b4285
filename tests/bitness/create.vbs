' Returns 7 if the script host can use a record in its own process or, if that fails, in another.
Dim job
Set job = CreateObject("Corvane.PrintJob")
job.UserName = "j.doe"
If InStr(job.Xml, "<UserName>j.doe</UserName>") > 0 Then WScript.Quit 7
