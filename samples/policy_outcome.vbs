' A policy's outcome: checks jobs against two rules and stores the outcome in each job. The receiver of the job's XML
' acts on it: print, ask the user, or refuse.
'
'   cscript //nologo policy_outcome.vbs
'
' The library must be registered (regsvr32 Tarnwick.dll). Exit code: 0, or 1 with a message if a step fails.
Option Explicit

Const RULE_DUPLEX = 1   ' more than ten pages are printed on both sides
Const RULE_COLOUR = 2   ' no colour on office paper
Const POLICY_ID = 7

Dim exitCode

On Error Resume Next
exitCode = Main()
If Err.Number <> 0 Then
    WScript.Echo "Failed: " & Err.Description & " (0x" & Hex(Err.Number) & ")"
    exitCode = 1
End If
WScript.Quit exitCode

Function Main()
    Decide "short letter", "A4,Simplex,B&W,PCL6", 2, "print"
    Decide "long report on one side", "A4,Simplex,B&W,PCL6", 40, "print, and tell the user: 1"
    Decide "brochure in colour", "A4,Duplex,Color,PCL6", 8, "ask the user: 2"
    Decide "everything at once", "A4,Simplex,Color,PCL6", 40, "ask the user: 1,2"
    KeptOutcomeSurvivesOlderForm
    WScript.Echo "All 5 outcomes agree."
    Main = 0
End Function

Sub Decide(name, words, pages, expected)
    Dim job, received, answer
    Set job = CreateObject("Corvane.PrintJob")
    job.JobName = name
    job.JobContents.GenerateContentsFromPageCounterInfo words, pages, 1, pages, pages
    ' Plain assignment, not Set: the property has propput, not propputref.
    job.PolicyResults = Judge(job.JobContents)

    ' The receiver has only the job's XML.
    Set received = CreateObject("Corvane.PrintJob")
    received.Xml = job.Xml
    answer = AnswerTo(received.PolicyResults)
    WScript.Echo name & ": " & answer
    CheckSame name, expected, answer
End Sub

Function Judge(contents)
    Dim policy
    Set policy = CreateObject("Corvane.PolicyResults")
    policy.PolicyId = POLICY_ID
    policy.PolicyName = "Office printing"
    If contents.TotalPages > 10 And Not contents.ContainsDuplex Then
        policy.AddRuleViolation RULE_DUPLEX, "Inform"
    End If
    If contents.TotalPagesColor > 0 Then policy.AddRuleViolation RULE_COLOUR, "Confirm"
    Set Judge = policy
End Function

Function AnswerTo(policy)
    If Not policy.PolicyViolated Then
        AnswerTo = "print"
    ElseIf policy.InformOnlyViolations Then
        AnswerTo = "print, and tell the user: " & policy.RuleViolations
    Else
        AnswerTo = "ask the user: " & policy.RuleViolations
    End If
End Function

' A user who says no cancels the job. Every form of the print job from 4.0 stores the outcome.
Sub KeptOutcomeSurvivesOlderForm()
    Dim job, received, policy
    Set job = CreateObject("Corvane.PrintJob")
    job.Xml = "<PrintJob Version=""4.0""/>"
    Set policy = CreateObject("Corvane.PolicyResults")
    policy.AddRuleViolation RULE_COLOUR, "Confirm"
    policy.Cancelled = True
    job.PolicyResults = policy

    Set received = CreateObject("Corvane.PrintJob")
    received.Xml = job.Xml
    CheckSame "version", "4.0", received.Version
    CheckSame "cancelled", True, received.PolicyResults.Cancelled
    CheckSame "violated", True, received.PolicyResults.RuleViolated(RULE_COLOUR)
    CheckSame "not violated", False, received.PolicyResults.RuleViolated(RULE_DUPLEX)
    WScript.Echo "cancelled by the user, in the form 4.0: kept"
End Sub

Sub CheckSame(what, expected, actual)
    If expected <> actual Then
        Err.Raise vbObjectError + 1, "policy_outcome.vbs", what & ": expected '" & expected & "', got '" & actual & "'"
    End If
End Sub
