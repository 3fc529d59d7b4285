#include "FreshLibrary.h"

#include "tests/support/RegistryTree.h"

// Registration and unregistration under a private HKEY_CLASSES_ROOT.

namespace {

constexpr LCID ForeignLocale = 0x0407; // not the system's

/// The quick tier skips most of the calls: there are thousands.
std::size_t Stride(std::size_t everyDay) {
    return RunsEverything() ? 1 : everyDay;
}

/// Compares the whole tree, including the keys that the system writes below Interface and TypeLib.
void CheckIsWhole(const PrivateClassesRoot& root, const RegistryTree& whole) {
    CHECK_KEYS(ReadRegistryTree(root.Key()), whole);
}

/// Sets a thread locale that the library must restore after each run.
struct CallersLocale {
    CallersLocale() : before(GetThreadLocale()) { SetThreadLocale(ForeignLocale); }
    ~CallersLocale() { SetThreadLocale(before); }
    CallersLocale(const CallersLocale&) = delete;
    CallersLocale& operator=(const CallersLocale&) = delete;

    /// SetThreadLocale itself may be the failing call.
    static void Check(const FaultRun& run) {
        if (run.name != "SetThreadLocale" && run.mode == FaultMode::One)
            CHECK(GetThreadLocale() == ForeignLocale);
        SetThreadLocale(ForeignLocale);
    }
    LCID before;
};

} // namespace

TEST_CASE("Faults_in_registration_are_survived") {
    FreshLibrary fresh;
    const Library library;
    UseAndFail(LibraryClassNamed("CopyLine")); // the first exception allocates permanently
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
    UseAndFail(LibraryClassNamed("CopyLine")); // the first exception allocates permanently
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
