# NOT RUN by the project's tests, which have no PowerShell. They run the VBScript and JScript samples, which
# make the same calls.
#
# Turns a page counter report into a print job, passes it on as XML, and shows what the receiver gets.
#
#   pwsh page_counter.ps1
#
# Windows PowerShell runs it, too. The library of PowerShell's bitness must be registered.
$ErrorActionPreference = 'Stop'

$sent = New-Object -ComObject Corvane.PrintJob
$sent.JobName = 'Quarterly figures.docx'
$sent.UserDomainName = 'NORTHSHORE'
$sent.UserName = 'a.berg'
$sent.LogicalPrinterGuid = '{5B0E2A64-8C1F-4C57-9F0B-2D0C8D3E7A11}'

# A new job already has contents; fill them in place: words, originals, copies, pages, sheets.
$sent.JobContents.GenerateContentsFromPageCounterInfo('A4,Duplex,B&W,PostScript', 12, 2, 24, 12)

$policy = New-Object -ComObject Corvane.PolicyResults
$policy.PolicyId = 3
$policy.PolicyName = 'Office printing'
$sent.PolicyResults = $policy

$received = New-Object -ComObject Corvane.PrintJob
$received.Xml = $sent.Xml

if ($received.Xml -cne $sent.Xml) {
    throw 'The receiver has another job than the sender.'
}
'{0} of {1}\{2}: {3} pages' -f $received.JobName, $received.UserDomainName, $received.UserName,
    $received.JobContents.TotalPages
$lines = $received.JobContents.JobCopyLines
for ($index = 0; $index -lt $lines.Count; $index++) {
    $line = $lines.Item($index)
    '  {0} ({1}): {2} sheets' -f $line.PaperSize, $line.Attributes, $line.Sheets
}

# A failing call throws an exception with the library's description.
try {
    $received.Xml = '<Invoice/>'
    throw 'The library should have refused this text.'
}
catch [System.Runtime.InteropServices.COMException] {
    'Refused, as it should be: {0} (0x{1:X8})' -f $_.Exception.Message, $_.Exception.ErrorCode
}
'All is well.'
