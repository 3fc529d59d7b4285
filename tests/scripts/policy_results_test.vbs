Sub RunTests()
    New_has_its_defaults
    Violations_are_sorted_without_duplicates
    Negative_violation_is_ignored
    Violation_can_be_removed_and_all_cleared
    InformOnlyViolations_compares_the_exact_action
    Xml_contains_only_non_default_values
    Xml_reads_back_unchanged
    HasRules_is_read_from_its_attribute
End Sub

Function NewPolicy()
    Set NewPolicy = CreateObject("Corvane.PolicyResults")
End Function

Sub New_has_its_defaults()
    Dim policy, xml
    Test "New_has_its_defaults"
    Set policy = NewPolicy()
    CheckEqual policy.Version, "4.0"
    CheckLong policy.PolicyId, 0
    CheckEqual policy.PolicyName, ""
    CheckEqual policy.HasRules, True
    CheckEqual policy.Cancelled, False
    CheckEqual policy.PolicyViolated, False
    CheckEqual policy.InformOnlyViolations, False
    CheckEqual policy.RuleViolations, ""
    xml = XmlOf(policy)
    CheckContains xml, "/OutputManagement/Policy"" Version=""4.0""><PolicyId>0</PolicyId><PolicyName/>"
    CheckLacks xml, "HasRules"
    CheckLacks xml, "Cancelled"
    CheckLacks xml, "RuleViolations"
End Sub

Sub Violations_are_sorted_without_duplicates()
    Dim policy
    Test "Violations_are_sorted_without_duplicates"
    Set policy = NewPolicy()
    policy.AddRuleViolation 9, "Inform"
    policy.AddRuleViolation 2, "Block"
    policy.AddRuleViolation 5, "Inform"
    policy.AddRuleViolation 2, "Inform"
    CheckEqual policy.RuleViolations, "2,5,9"
    CheckEqual policy.PolicyViolated, True
    CheckEqual policy.RuleViolated(5), True
    CheckEqual policy.RuleViolated(6), False
    CheckEqual policy.InformOnlyViolations, False
    CheckContains XmlOf(policy), "<RuleViolations><Rule TriggerId=""2"" Action=""Block""/>" & _
        "<Rule TriggerId=""5"" Action=""Inform""/><Rule TriggerId=""9"" Action=""Inform""/></RuleViolations>"
End Sub

Sub Negative_violation_is_ignored()
    Dim policy
    Test "Negative_violation_is_ignored"
    Set policy = NewPolicy()
    policy.AddRuleViolation -1, "Inform"
    CheckEqual policy.PolicyViolated, False
    CheckEqual policy.RuleViolated(-1), False
End Sub

Sub Violation_can_be_removed_and_all_cleared()
    Dim policy
    Test "Violation_can_be_removed_and_all_cleared"
    Set policy = NewPolicy()
    policy.AddRuleViolation 1, "Inform"
    policy.AddRuleViolation 2, "Inform"
    policy.AddRuleViolation 3, "Inform"
    policy.RemoveRuleViolation 2
    policy.RemoveRuleViolation 17
    CheckEqual policy.RuleViolations, "1,3"
    policy.ClearRuleViolations
    CheckEqual policy.RuleViolations, ""
End Sub

Sub InformOnlyViolations_compares_the_exact_action()
    Dim policy
    Test "InformOnlyViolations_compares_the_exact_action"
    Set policy = NewPolicy()
    policy.AddRuleViolation 1, "Inform"
    CheckEqual policy.InformOnlyViolations, True
    policy.AddRuleViolation 2, "inform"
    CheckEqual policy.InformOnlyViolations, False
End Sub

Sub Xml_contains_only_non_default_values()
    Dim policy
    Test "Xml_contains_only_non_default_values"
    Set policy = NewPolicy()
    policy.PolicyId = 17
    policy.HasRules = False
    policy.Cancelled = True
    policy.PolicyName = "Office & archive"
    CheckContains XmlOf(policy), "<PolicyId HasRules=""false"">17</PolicyId>" & _
        "<PolicyName>Office &amp; archive</PolicyName><Cancelled>true</Cancelled></PolicyResults>"
End Sub

Sub Xml_reads_back_unchanged()
    Dim policy, copy
    Test "Xml_reads_back_unchanged"
    Set policy = NewPolicy()
    policy.PolicyId = 17
    policy.HasRules = False
    policy.Cancelled = True
    policy.PolicyName = "Office"
    policy.AddRuleViolation 4, "Ask ""why"" & wait"
    Set copy = NewPolicy()
    copy.AddRuleViolation 99, "Inform"
    copy.Xml = XmlOf(policy)
    CheckEqual XmlOf(copy), XmlOf(policy)
    CheckLong copy.PolicyId, 17
    CheckEqual copy.HasRules, False
    CheckEqual copy.Cancelled, True
    CheckEqual copy.PolicyName, "Office"
    CheckEqual copy.RuleViolations, "4"
End Sub

Sub HasRules_is_read_from_its_attribute()
    Dim policy
    Test "HasRules_is_read_from_its_attribute"
    Set policy = NewPolicy()
    policy.Xml = "<PolicyResults Version=""4.0""><PolicyId HasRules=""false"">1</PolicyId></PolicyResults>"
    CheckEqual policy.HasRules, False
    policy.Xml = "<PolicyResults Version=""4.0""><PolicyId>1</PolicyId></PolicyResults>"
    CheckEqual policy.HasRules, True
End Sub
