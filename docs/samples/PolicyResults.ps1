$results = New-Object -ComObject Corvane.PolicyResults
$results.PolicyId = 12
$results.PolicyName = "Colour only on request"
$results.AddRuleViolation(9, "Inform")
$results.AddRuleViolation(7, "Inform")
"$($results.PolicyName): $($results.RuleViolations), inform only: $($results.InformOnlyViolations)"
$results.AddRuleViolation(2, "Cancel")
"$($results.PolicyName): $($results.RuleViolations), inform only: $($results.InformOnlyViolations)"
