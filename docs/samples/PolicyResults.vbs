Dim results

Set results = CreateObject("Corvane.PolicyResults")
results.PolicyId = 12
results.PolicyName = "Colour only on request"
results.AddRuleViolation 9, "Inform"
results.AddRuleViolation 7, "Inform"
WScript.Echo results.PolicyName & ": " & results.RuleViolations & ", inform only: " & results.InformOnlyViolations
results.AddRuleViolation 2, "Cancel"
WScript.Echo results.PolicyName & ": " & results.RuleViolations & ", inform only: " & results.InformOnlyViolations
