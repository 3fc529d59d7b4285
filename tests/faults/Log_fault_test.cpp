#include "FreshLibrary.h"

#include "tests/support/LogSession.h"

#include <algorithm>
#include <iterator>

// The log never affects its caller, whether it is configured, writes or rotates. It writes whole lines only.

namespace {

constexpr std::size_t Megabyte = 1024 * 1024;
constexpr std::wstring_view Line = L"[CCopyJobImpl::put_Xml] Exception: CopyJob element is missing.\r\n";

/// Fills the file up to the point where the next line reaches the maximum size.
void FillFile(const std::wstring& path) {
    const QxKernelHandle file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, CREATE_ALWAYS, 0, nullptr));
    REQUIRE(file.IsOpen());
    std::wstring text(Megabyte / sizeof(wchar_t) - 10, L'x');
    text.replace(text.size() - 2, 2, L"\r\n");
    DWORD written = 0;
    REQUIRE(WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &written,
                      nullptr));
}

/// The lines after the filler.
std::wstring LinesOf(const std::wstring& path) {
    const std::wstring text = FileExists(path) ? FileText(path) : L"";
    return text.find(L'x') == 0 ? text.substr(text.find(L"\r\n") + 2) : text;
}

/// The lines that may be in the log: the failing call, out of memory in it, and the two lines written when
/// formatting runs out of memory.
constexpr std::wstring_view WholeLines[] = {
    Line,
    L"[CCopyJobImpl::put_Xml] Exception: Out of memory.\r\n",
    L"[QxMisc::FormatStringV] Caught a general exception\r\n",
    L"[%ls] Exception: %ls\r\n",
};

bool IsWholeLines(std::wstring_view text) {
    while (!text.empty()) {
        const auto* const whole =
            std::find_if(std::begin(WholeLines), std::end(WholeLines),
                         [&](std::wstring_view each) { return text.starts_with(each); });
        if (whole == std::end(WholeLines))
            return false;
        text.remove_prefix(whole->size());
    }
    return true;
}

/// The disk wrote half a line and refuses to truncate it; the log cannot avoid that.
bool IsTorn(const FaultRun& run) {
    return run.mode == FaultMode::AllFrom && run.name == "WriteFile, half of it";
}

/// Makes each call fail in turn during a logged failure of the library.
std::size_t FailLoggedCalls(bool rotates, bool opens) {
    FaultInjector::Watch();
    LogSession session;
    session.Enable();
    session.Put(L"TraceLog", 1u);
    session.Put(L"MaxFileSize", 1u);
    FreshLibrary library;
    DeleteFileW(session.Path().c_str());
    ComPtr<ICopyJob> job;
    const UniqueBstr wrong(L"<x/>");
    const auto fail = [&] { return job->put_Xml(wrong.Get()); };
    const auto prepare = [&] {
        library.Load();
        job = CreateCopyJob();
        if (!opens)
            CHECK_HR(fail(), E_FAIL); // opens the file
        if (rotates)
            FillFile(session.Path());
    };
    const auto check = [&](const FaultRun& run) {
        CheckResult(run, E_FAIL);
        CHECK_HR(fail(), E_FAIL);
        if (IsTorn(run))
            return;
        const std::wstring backup = session.Path() + L".bak";
        const std::wstring written = LinesOf(backup) + L"|" + LinesOf(session.Path());
        INFO(Narrow(written));
        CHECK(IsWholeLines(LinesOf(backup)));
        CHECK(IsWholeLines(LinesOf(session.Path())));
        CHECK(written.find(Line) != std::wstring::npos); // at least the retry's line
        if (rotates && !run.struck)
            CHECK(FileExists(backup));
    };
    const auto cleanUp = [&] {
        job = {};
        library.Unload();
        DeleteFileW(session.Path().c_str());
        DeleteFileW((session.Path() + L".bak").c_str());
    };
    return RunWithoutGrowth(
        [&](FaultMode mode) { return FailEachCall(mode, {prepare, fail, check, cleanUp, true}); });
}

} // namespace

TEST_CASE("Faults_in_the_first_written_line_are_survived") {
    PrintInjected("log, first line", FailLoggedCalls(false, true));
}

TEST_CASE("Faults_in_a_written_line_are_survived") {
    PrintInjected("log, later line", FailLoggedCalls(false, false));
}

TEST_CASE("Faults_in_the_rotation_of_the_log_are_survived") {
    PrintInjected("log, rotation", FailLoggedCalls(true, false));
}

TEST_CASE("Faults_in_the_configuration_of_the_log_are_survived") {
    FaultInjector::Watch();
    LogSession session;
    session.Enable(63);
    session.Put(L"SourceName", L"Somebody");
    session.Put(L"TraceLog", 1u);
    FreshLibrary library;
    const auto check = [](const FaultRun& run) {
        CHECK_HR(run.result, S_OK);
        FailOnce();
    };
    const std::size_t runs = RunWithoutGrowth([&](FaultMode mode) {
        return FailEachCall(mode,
                            {{}, [&] { return library.Load(); }, check, [&] { library.Unload(); }, false});
    });
    PrintInjected("log, configuration", runs);
}
