Const DM_COPIES = &H100
Const DM_DUPLEX = &H1000
Const DMDUP_VERTICAL = 2
Dim info

Set info = CreateObject("Corvane.WindowsPrintInfo")
info.DevModeFields = DM_COPIES Or DM_DUPLEX
info.DevModeCopies = 3
info.DevModeDuplex = DMDUP_VERTICAL
WScript.Echo info.JobInfoCopies & " copies, duplex: " & info.IsDuplex
