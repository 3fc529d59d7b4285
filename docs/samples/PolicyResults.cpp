#include "client.h"

namespace {

void Show(const Ref<IPolicyResults>& results) {
    Text name, violations;
    VARIANT_BOOL informOnly;
    Check(results->get_PolicyName(name.Put()));
    Check(results->get_RuleViolations(violations.Put()));
    Check(results->get_InformOnlyViolations(&informOnly));
    Print(L"%ls: %ls, inform only: %ls\n", name.Get(), violations.Get(), TrueOrFalse(informOnly));
}

} // namespace

int main() {
    Apartment apartment;
    auto results = Create<PolicyResults, IPolicyResults>();
    Check(results->put_PolicyId(12));
    Check(results->put_PolicyName(Text(L"Colour only on request")));
    Check(results->AddRuleViolation(9, Text(L"Inform")));
    Check(results->AddRuleViolation(7, Text(L"Inform")));
    Show(results);
    Check(results->AddRuleViolation(2, Text(L"Cancel")));
    Show(results);
}
