#include <JobObjects.hpp>

#include <cstdio>

namespace {

void Show(const JobObjects::PolicyResults& results) {
    std::printf("%ls: %ls, inform only: %s\n", results.PolicyName().c_str(), results.RuleViolations().c_str(),
                results.InformOnlyViolations() ? "True" : "False");
}

} // namespace

int main() {
    const JobObjects::Apartment apartment;
    const auto results = JobObjects::PolicyResults::Create();
    results.PolicyId(12);
    results.PolicyName(L"Colour only on request");
    results.AddRuleViolation(9, L"Inform");
    results.AddRuleViolation(7, L"Inform");
    Show(results);
    results.AddRuleViolation(2, L"Cancel");
    Show(results);
}
