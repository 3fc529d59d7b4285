// Runs the tests of the library on this machine, without tools of the build machine. Started by verify.cmd.
//
//   verify [--user] [--only REGEX] [--report FILE]
//
// Returns 0 if all tests that ran have passed, otherwise 1.

#include "TestRunner.h"

#include "tests/support/Wine.h"
#include "tools/Utf8.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <set>
#include <stdexcept>

namespace {

struct Options {
    bool asUser = false; ///< leaves the machine alone even if an administrator runs it
    std::regex only{""};
    std::filesystem::path report;
};

std::filesystem::path KitFolder() {
    wchar_t path[MAX_PATH];
    if (GetModuleFileNameW(nullptr, path, MAX_PATH) == MAX_PATH)
        throw std::runtime_error("the path of the kit is too long");
    return std::filesystem::path(path).parent_path();
}

Options ReadOptions(int count, wchar_t** arguments) {
    Options options;
    options.report = KitFolder() / "JobObjects-verify-report.txt";
    for (int i = 1; i < count; ++i) {
        const std::wstring argument = arguments[i];
        if (argument == L"--user")
            options.asUser = true;
        else if (argument == L"--only" && i + 1 < count)
            options.only = Utf8(arguments[++i]);
        else if (argument == L"--report" && i + 1 < count)
            options.report = std::filesystem::absolute(arguments[++i]);
        else
            throw std::runtime_error("usage: verify [--user] [--only REGEX] [--report FILE]");
    }
    return options;
}

BOOL WINAPI Interrupt(DWORD event) {
    interrupted = true;
    if (event == CTRL_CLOSE_EVENT)
        Sleep(INFINITE); // the process may clean up until this returns
    return TRUE;
}

std::set<std::filesystem::path> FilesBelow(const std::filesystem::path& folder) {
    std::set<std::filesystem::path> files;
    for (const auto& each : std::filesystem::recursive_directory_iterator(folder))
        files.insert(each.path());
    return files;
}

/// What the tests may leave behind.
class Traces {
public:
    explicit Traces(Folders folders)
        : m_folders(std::move(folders)), m_keys(OwnKeys()), m_files(FilesBelow(m_folders.kit)) {}

    /// Removes the work folder and reports what else has been added since the construction.
    Row Check() const {
        std::string added;
        for (const std::string& key : OwnKeys())
            if (std::find(m_keys.begin(), m_keys.end(), key) == m_keys.end())
                added += key + "\n";
        for (const std::filesystem::path& file : FilesBelow(m_folders.kit))
            if (!m_files.contains(file))
                added += Utf8(file.wstring()) + "\n";
        std::error_code error;
        std::filesystem::remove_all(m_folders.work, error);
        if (std::filesystem::exists(m_folders.work))
            added += Utf8(m_folders.work.wstring()) + "\n";
        return {"nothing left behind",
                {{"", added.empty() ? Result::Passed : Result::Failed,
                  added.empty() ? "" : "files or keys remain", added}}};
    }

private:
    Folders m_folders;
    std::vector<std::string> m_keys;
    std::set<std::filesystem::path> m_files;
};

/// A folder for everything that the tests write, their temporary files included.
std::filesystem::path NewWorkFolder() {
    std::filesystem::path folder = std::filesystem::temp_directory_path() /
                                   ("JobObjects-verify-" + std::to_string(GetCurrentProcessId()));
    std::filesystem::create_directory(folder);
    for (const wchar_t* variable : {L"TEMP", L"TMP"})
        SetEnvironmentVariableW(variable, folder.c_str());
    return folder;
}

/// Why the machine must not be changed; empty if it may be.
std::string RefusalToChangeMachine(const Options& options) {
    if (options.asUser)
        return "--user was given";
    if (!IsAdministrator())
        return "needs an administrator";
    for (const Platform& platform : Platforms())
        if (const std::wstring library = RegisteredLibrary(platform); !library.empty())
            return "JobObjects is registered already: " + Utf8(library);
    return {};
}

bool Verify(const Options& options) {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX |
                 SEM_NOOPENFILEERRORBOX); // also for the tests
    SetConsoleCtrlHandler(Interrupt, TRUE);
    GetDesktopWindow(); // Wine starts a process for it, which would end with the test that needs it first
    const Folders folders{KitFolder(), NewWorkFolder()};
    const Traces traces(folders);
    const std::string refusal = RefusalToChangeMachine(options);
    Report report;
    report.AddFact("JobObjects " PROJECT_VERSION ", verification");
    report.AddFact(SystemName());
    report.AddFact(refusal.empty() ? "As administrator, with all tests"
                                   : "Without the tests that change the machine: " + refusal);
    if (!Is64BitWindows())
        report.AddFact("Without the 64-bit tests: this Windows has 32 bits");
    for (const Platform& platform : Platforms())
        TestRunner(platform, folders, options.only, refusal, report).RunAll();
    report.AddRow(traces.Check());
    if (!report.Write(options.report))
        throw std::runtime_error("cannot write " + options.report.string());
    std::printf("Report: %s\n", options.report.string().c_str());
    return report.Passed() && !interrupted;
}

} // namespace

int wmain(int count, wchar_t** arguments) {
    try {
        return Verify(ReadOptions(count, arguments)) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "verify: %s\n", error.what());
        return 1;
    }
}
