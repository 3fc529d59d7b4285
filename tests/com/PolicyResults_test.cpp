#include "tests/support/RecordTest.h"

namespace {

void Violate(const ComPtr<IPolicyResults>& results, LONG triggerId, const wchar_t* action) {
    CHECK_HR(results->AddRuleViolation(triggerId, UniqueBstr(action).Get()), S_OK);
}

bool Violated(const ComPtr<IPolicyResults>& results, LONG triggerId) {
    VARIANT_BOOL violated = 0x5A5A;
    CHECK_HR(results->RuleViolated(triggerId, &violated), S_OK);
    CHECK((violated == VARIANT_TRUE || violated == VARIANT_FALSE));
    return violated == VARIANT_TRUE;
}

std::wstring Violations(const ComPtr<IPolicyResults>& results) {
    return Text(results, &IPolicyResults::get_RuleViolations);
}

ComPtr<IPolicyResults> ResultsFrom(std::wstring_view elements) {
    auto results = CreatePolicyResults();
    INFO(Narrow(elements));
    REQUIRE_HR(Put(results, &IPolicyResults::put_Xml, RecordText(L"PolicyResults", L"4.0", elements)), S_OK);
    return results;
}

} // namespace

TEST_CASE("PolicyResults_violations_are_ordered_by_trigger") {
    const auto results = CreatePolicyResults();
    Violate(results, 9, L"Inform");
    Violate(results, 2, L"Block");
    Violate(results, 5, L"Inform");
    CHECK_TEXT(Violations(results), L"2,5,9");
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml),
              L"<RuleViolations><Rule TriggerId=\"2\" Action=\"Block\"/><Rule TriggerId=\"5\" "
              L"Action=\"Inform\"/><Rule TriggerId=\"9\" Action=\"Inform\"/></RuleViolations>");
    Violate(results, LONG_MAX, L"Inform");
    Violate(results, 0, L"Inform");
    CHECK_TEXT(Violations(results), L"0,2,5,9,2147483647");
    Violate(results, 10, L"Inform");
    CHECK_TEXT(Violations(results), L"0,2,5,9,10,2147483647"); // by number, not by text
}

TEST_CASE("PolicyResults_first_action_of_a_trigger_is_kept") {
    const auto results = CreatePolicyResults();
    Violate(results, 7, L"Block");
    Violate(results, 7, L"Inform");
    CHECK_TEXT(Violations(results), L"7");
    CHECK(Value(results, &IPolicyResults::get_InformOnlyViolations) == VARIANT_FALSE);
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml), L"<Rule TriggerId=\"7\" Action=\"Block\"/>");
}

TEST_CASE("PolicyResults_negative_trigger_is_ignored") {
    const auto results = CreatePolicyResults();
    for (const LONG triggerId : {-1L, LONG_MIN}) {
        Violate(results, triggerId, L"Inform");
        CHECK_FALSE(Violated(results, triggerId));
    }
    CHECK(Value(results, &IPolicyResults::get_PolicyViolated) == VARIANT_FALSE);
    CHECK_TEXT(Violations(results), L"");
}

TEST_CASE("PolicyResults_null_action_is_the_empty_text") {
    const auto results = CreatePolicyResults();
    CHECK_HR(results->AddRuleViolation(3, nullptr), S_OK);
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml), L"<Rule TriggerId=\"3\" Action=\"\"/>");
    CHECK(Value(results, &IPolicyResults::get_InformOnlyViolations) == VARIANT_FALSE);
}

TEST_CASE("PolicyResults_violations_inform_only_when_every_action_is_Inform") {
    for (const wchar_t* action : {L"inform", L"INFORM", L"Inform ", L"", L"Block"}) {
        INFO(Narrow(action));
        const auto results = CreatePolicyResults();
        Violate(results, 1, L"Inform");
        CHECK(Value(results, &IPolicyResults::get_InformOnlyViolations) == VARIANT_TRUE);
        Violate(results, 2, action);
        CHECK(Value(results, &IPolicyResults::get_InformOnlyViolations) == VARIANT_FALSE);
        CHECK_HR(results->RemoveRuleViolation(2), S_OK);
        CHECK(Value(results, &IPolicyResults::get_InformOnlyViolations) == VARIANT_TRUE);
    }
}

TEST_CASE("PolicyResults_violations_are_removed_and_cleared") {
    const auto results = CreatePolicyResults();
    Violate(results, 1, L"Inform");
    Violate(results, 2, L"Block");
    CHECK(Violated(results, 1));
    CHECK_FALSE(Violated(results, 3));
    CHECK_HR(results->RemoveRuleViolation(3), S_OK); // none with this trigger
    CHECK_HR(results->RemoveRuleViolation(-1), S_OK);
    CHECK_HR(results->RemoveRuleViolation(1), S_OK);
    CHECK_FALSE(Violated(results, 1));
    CHECK_TEXT(Violations(results), L"2");
    CHECK(Value(results, &IPolicyResults::get_PolicyViolated) == VARIANT_TRUE);
    CHECK_HR(results->ClearRuleViolations(), S_OK);
    CHECK(Value(results, &IPolicyResults::get_PolicyViolated) == VARIANT_FALSE);
    CHECK_TEXT(Violations(results), L"");
    CHECK_HR(results->ClearRuleViolations(), S_OK);
    Violate(results, 2, L"Inform"); // the first action can be set again
    CHECK(Value(results, &IPolicyResults::get_InformOnlyViolations) == VARIANT_TRUE);
}

TEST_CASE("PolicyResults_optional_parts_are_left_out") {
    const auto results = CreatePolicyResults();
    const std::wstring xml = Text(results, &IPolicyResults::get_Xml);
    CHECK_HAS(xml, L" Version=\"4.0\"><PolicyId>0</PolicyId><PolicyName/></PolicyResults>");
    REQUIRE_HR(results->put_HasRules(VARIANT_FALSE), S_OK);
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml), L"<PolicyId HasRules=\"false\">0</PolicyId>");
    REQUIRE_HR(results->put_Cancelled(VARIANT_TRUE), S_OK);
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml),
              L"<PolicyName/><Cancelled>true</Cancelled></PolicyResults>");
    REQUIRE_HR(results->put_PolicyId(-3), S_OK);
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml), L">-3</PolicyId>");
}

TEST_CASE("PolicyResults_PolicyId_is_read_as_a_positive_value_or_zero") {
    const auto idOf = [](const wchar_t* text) {
        return Value(ResultsFrom(L"<PolicyId>" + std::wstring(text) + L"</PolicyId>"),
                     &IPolicyResults::get_PolicyId);
    };
    CHECK(idOf(L"17") == 17);
    CHECK(idOf(L"-17") == 0);
    CHECK(idOf(L"0") == 0);
    CHECK(idOf(L"x") == 0);
    CHECK(idOf(L"") == 0);
    CHECK(Value(ResultsFrom(L""), &IPolicyResults::get_PolicyId) == 0);
}

TEST_CASE("PolicyResults_HasRules_is_true_unless_its_attribute_is_another_value") {
    const auto hasRules = [](const wchar_t* elements) {
        return Value(ResultsFrom(elements), &IPolicyResults::get_HasRules) == VARIANT_TRUE;
    };
    CHECK(hasRules(L""));
    CHECK(hasRules(L"<PolicyId>1</PolicyId>"));
    CHECK(hasRules(L"<PolicyId HasRules=\"true\">1</PolicyId>"));
    CHECK(hasRules(L"<PolicyId HasRules=\"TRUE\"/>"));
    CHECK(hasRules(L"<PolicyId HasRules=\"1\"/>"));
    CHECK_FALSE(hasRules(L"<PolicyId HasRules=\"false\">1</PolicyId>"));
    CHECK_FALSE(hasRules(L"<PolicyId HasRules=\"no\"/>"));
    CHECK_FALSE(hasRules(L"<PolicyId HasRules=\"\"/>"));
    const auto results = ResultsFrom(L"<PolicyId HasRules=\"false\"/>");
    REQUIRE_HR(Put(results, &IPolicyResults::put_Xml, RecordText(L"PolicyResults", L"4.0", L"<PolicyId/>")),
               S_OK);
    CHECK(Value(results, &IPolicyResults::get_HasRules) == VARIANT_TRUE);
}

TEST_CASE("PolicyResults_missing_elements_reset_their_fields") {
    const auto results = ResultsFrom(L"<PolicyName>a</PolicyName><Cancelled>1</Cancelled><RuleViolations>"
                                     L"<Rule TriggerId=\"1\" Action=\"a\"/></RuleViolations>");
    CHECK_TEXT(Text(results, &IPolicyResults::get_PolicyName), L"a");
    CHECK(Value(results, &IPolicyResults::get_Cancelled) == VARIANT_TRUE);
    CHECK_TEXT(Violations(results), L"1");
    REQUIRE_HR(Put(results, &IPolicyResults::put_Xml, RecordText(L"PolicyResults", L"4.0")), S_OK);
    CHECK_TEXT(Text(results, &IPolicyResults::get_PolicyName), L"");
    CHECK(Value(results, &IPolicyResults::get_Cancelled) == VARIANT_FALSE);
    CHECK_TEXT(Violations(results), L"");
}

TEST_CASE("PolicyResults_violations_are_read_as_they_are_added") {
    const auto results = ResultsFrom(
        L"<RuleViolations><Rule TriggerId=\"9\"/><Other TriggerId=\"3\"/><Rule Action=\"Block\" "
        L"TriggerId=\"2\"/>"
        L"<!-- none --><Rule TriggerId=\"-1\" Action=\"x\"/><Rule TriggerId=\"2\" Action=\"Inform\"/>"
        L"<p:Rule p:TriggerId=\"5\" Action=\"a &amp; b\">text</p:Rule><Rule Action=\"no trigger\"/>"
        L"</RuleViolations><Rule TriggerId=\"77\"/>");
    CHECK_TEXT(Violations(results), L"0,2,5,9");
    CHECK_HAS(Text(results, &IPolicyResults::get_Xml),
              L"<RuleViolations><Rule TriggerId=\"0\" Action=\"no trigger\"/>"
              L"<Rule TriggerId=\"2\" Action=\"Block\"/><Rule TriggerId=\"5\" Action=\"a &amp; b\"/>"
              L"<Rule TriggerId=\"9\" Action=\"\"/></RuleViolations>");
    CHECK_TEXT(Violations(ResultsFrom(L"<RuleViolations/>")), L"");
    CHECK_TEXT(Violations(ResultsFrom(L"<RuleViolations></RuleViolations>")), L"");
}

TEST_CASE("PolicyResults_Xml_without_its_root_fails_with_its_message") {
    const auto results = CreatePolicyResults();
    for (const wchar_t* text : {L"", L"<x/>", L"<policyresults Version=\"4.0\"/>", L"<PolicyResults"}) {
        CHECK_HR(Put(results, &IPolicyResults::put_Xml, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"PolicyResults element is missing.");
    }
}

TEST_CASE("PolicyResults_version_has_no_default") {
    const auto results = CreatePolicyResults();
    Violate(results, 1, L"Inform");
    for (const wchar_t* text :
         {L"<PolicyResults/>", L"<PolicyResults Version=\"\"/>", L"<PolicyResults Version=\"4\"/>",
          L"<PolicyResults Version=\"1.2.3.4.5\"/>"}) {
        INFO(Narrow(text));
        CHECK_HR(Put(results, &IPolicyResults::put_Xml, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(),
                   L"Version has fewer than two components or more than four components.");
    }
    CHECK_HR(Put(results, &IPolicyResults::put_Xml, L"<PolicyResults Version=\"4.x\"/>"), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(),
               L"A major, minor, build, or revision component is not a valid non-zero number.");
    CHECK_TEXT(Violations(results), L"1"); // fails before the old violations are cleared
    CHECK_TEXT(Text(results, &IPolicyResults::get_Version), L"4.0");
}

TEST_CASE("PolicyResults_version_is_kept_with_its_components") {
    const auto results = CreatePolicyResults();
    for (const wchar_t* version : {L"1.0", L"4.0", L"7.26.1", L"1.2.3.4"}) {
        REQUIRE_HR(Put(results, &IPolicyResults::put_Xml, RecordText(L"PolicyResults", version)), S_OK);
        CHECK_TEXT(Text(results, &IPolicyResults::get_Version), version);
        CHECK_HAS(Text(results, &IPolicyResults::get_Xml), L" Version=\"" + std::wstring(version) + L"\">");
    }
}
