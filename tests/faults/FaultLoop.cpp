#include "FaultLoop.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

FaultRun RunOnce(std::size_t failing, FaultMode mode, const FaultSubject& subject) {
    const Faults faults(failing, mode);
    const HRESULT result = subject.work();
    FaultRun run{failing, mode, faults.HaveStruck(), "", faults.Outcomes(), result};
    if (run.struck)
        run.name = faults.FirstName();
    return run;
}

void Call(const std::function<void()>& step) {
    if (step)
        step();
}

} // namespace

bool RunsEverything() {
    const char* tier = std::getenv("FAULTS");
    return tier && std::string(tier) == "all";
}

std::string Show(const FaultRun& run) {
    return run.struck ? run.name + ", call " + std::to_string(run.failing) +
                            (run.mode == FaultMode::AllFrom ? " and all later calls" : "")
                      : "no failure";
}

std::size_t FailEachCall(FaultMode mode, const FaultSubject& subject, std::size_t stride) {
    constexpr std::size_t tooMany = 1'000'000; // stops an endless loop
    std::size_t runs = 0;
    for (std::size_t failing = 0; failing < tooMany; failing += stride) {
        const Ledger before = Ledger::Now();
        Call(subject.prepare);
        const FaultRun run = RunOnce(failing, mode, subject);
        INFO(Show(run));
        subject.check(run);
        Call(subject.cleanUp);
        SetErrorInfo(0, nullptr);
        const Ledger after = Ledger::Now();
        CHECK(after.blocks - before.blocks == 0);
        if (subject.countsTexts)
            CHECK(after.texts - before.texts == 0);
        if (!run.struck)
            return runs;
        ++runs;
    }
    FAIL("the work never completes without a fault");
    return runs;
}

void CheckResult(const FaultRun& run, HRESULT expected) {
    const bool isAbsorbed = std::all_of(run.outcomes.begin(), run.outcomes.end(),
                                        [](HRESULT outcome) { return outcome == S_OK; });
    std::vector<std::string> allowed;
    if (isAbsorbed || FAILED(expected))
        allowed.push_back(Hex(expected));
    for (const HRESULT outcome : run.outcomes)
        if (FAILED(outcome))
            allowed.push_back(Hex(outcome));
    if (run.name == "LoadTypeLibEx") // the library then tries the file in its folder, which does not exist
        allowed.push_back(Hex(TYPE_E_CANTLOADLIBRARY));
    CHECK_THAT(allowed, Catch::VectorContains(Hex(run.result)));
}

void PrintInjected(const std::string& group, std::size_t runs) {
    std::printf("faults, %s: %zu\n", group.c_str(), runs);
    CHECK(runs > 0);
}

void SwitchTextCacheOff() {
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"oleaut32.dll"), "SetOaNoCache");
    REQUIRE(address != nullptr);
    reinterpret_cast<void(WINAPI*)()>(reinterpret_cast<void*>(address))();
}
