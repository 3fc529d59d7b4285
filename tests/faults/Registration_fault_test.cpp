#include "FreshLibrary.h"

#include "tests/support/RegistryTree.h"

// Registration and unregistration, in a classes root of the test's own.

namespace {

constexpr LCID callersLocale = 0x0407; // not the system's

/// Fewer calls fail for every day: the two make some thousand.
std::size_t Stride(std::size_t everyDay) {
    return RunsEverything() ? 1 : everyDay;
}

/// COM looks below "Interface" and "TypeLib" what the system's own functions have written there.
void CheckIsWhole(const PrivateClassesRoot& root, const RegistryTree& whole) {
    CHECK_KEYS(ReadRegistryTree(root.Key()), whole);
}

/// The locale of the thread, which has to be the caller's again after each run.
struct CallersLocale {
    CallersLocale() : before(GetThreadLocale()) { SetThreadLocale(callersLocale); }
    ~CallersLocale() { SetThreadLocale(before); }
    CallersLocale(const CallersLocale&) = delete;
    CallersLocale& operator=(const CallersLocale&) = delete;

    /// Setting it is one of the calls that fail.
    static void Check(const FaultRun& run) {
        if (run.name != "SetThreadLocale" && run.mode == FaultMode::One)
            CHECK(GetThreadLocale() == callersLocale);
        SetThreadLocale(callersLocale);
    }
    LCID before;
};

} // namespace

TEST_CASE("Faults_in_registration_are_survived") {
    FreshLibrary fresh;
    const Library library;
    UseAndFail(LibraryClassNamed("CopyLine")); // the first exception makes what the library then keeps
    const PrivateClassesRoot root;
    const CallersLocale locale;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    const RegistryTree whole = ReadRegistryTree(root.Key());
    const auto check = [&](const FaultRun& run) {
        CheckResult(run, S_OK);
        CallersLocale::Check(run);
        CHECK_HR(library.RegisterServer(), S_OK);
        if (RunsEverything() || !run.struck)
            CheckIsWhole(root, whole);
    };
    const std::size_t runs = RunWithoutGrowth([&](FaultMode mode) {
        return FailEachCall(mode, {{}, [&] { return library.RegisterServer(); }, check, {}, true},
                            Stride(mode == FaultMode::One ? 151 : 311));
    });
    PrintInjected("registration", runs);
}

TEST_CASE("Faults_in_unregistration_are_survived") {
    FreshLibrary fresh;
    const Library library;
    UseAndFail(LibraryClassNamed("CopyLine")); // the first exception makes what the library then keeps
    const PrivateClassesRoot root;
    const CallersLocale locale;
    const auto prepare = [&] { REQUIRE_HR(library.RegisterServer(), S_OK); };
    const auto check = [&](const FaultRun& run) {
        CheckResult(run, S_OK);
        CallersLocale::Check(run);
        CHECK_HR(library.UnregisterServer(), S_OK);
        const RegistryTree roots = {{L"AppID", L""}, {L"CLSID", L""}, {L"Interface", L""}, {L"TypeLib", L""}};
        CHECK_KEYS(ReadRegistryTree(root.Key()), roots);
    };
    const std::size_t runs = RunWithoutGrowth([&](FaultMode mode) {
        return FailEachCall(mode, {prepare, [&] { return library.UnregisterServer(); }, check, {}, false},
                            Stride(mode == FaultMode::One ? 31 : 61));
    });
    PrintInjected("unregistration", runs);
}
