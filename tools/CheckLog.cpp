#include "CheckLog.h"

#include "Installation.h"
#include "Registry.h"
#include "TextFile.h"

#include "common/log/PlainFile.h"

namespace {

constexpr wchar_t LogKey[] = L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects\\Log";

/// A number of the configuration, 0 if it is missing.
DWORD NumberOf(CheckReport& report, const wchar_t* name) {
    const auto value = ReadNumber(HKEY_LOCAL_MACHINE, LogKey, name);
    if (!value && ValueExists(HKEY_LOCAL_MACHINE, LogKey, name))
        report.Problem(std::wstring(L"the log value ") + name + L" is not a REG_DWORD and counts as missing",
                       std::wstring(L"delete it and add it again as a REG_DWORD in HKEY_LOCAL_MACHINE\\") +
                           LogKey);
    return value.value_or(0);
}

/// Whether this account can create files there. Creates none.
bool CanAddFile(const std::wstring& folder) {
    HANDLE handle =
        CreateFileW(folder.c_str(), FILE_ADD_FILE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    return static_cast<bool>(Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle));
}

/// Why this account cannot write the log file; empty if it can.
std::wstring FileProblem(const std::wstring& file) {
    if (IsFolder(file))
        return L"it is a folder";
    if (OpenPlainFile(file, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING))
        return {};
    const DWORD reason = GetLastError();
    if (reason == ERROR_PATH_NOT_FOUND)
        return L"its folder does not exist";
    if (reason != ERROR_FILE_NOT_FOUND)
        return PlainFileProblem(reason);
    // The first line creates the file.
    return CanAddFile(FolderOf(file)) ? L"" : L"this account cannot create files in its folder";
}

} // namespace

void CheckLog(CheckReport& report) {
    if (!KeyExists(HKEY_LOCAL_MACHINE, LogKey)) {
        report.Item(L"Log", std::wstring(L"off: HKEY_LOCAL_MACHINE\\") + LogKey + L" does not exist");
        return;
    }
    const std::wstring file = ReadText(HKEY_LOCAL_MACHINE, LogKey, L"FileName").value_or(L"");
    const bool isOn = NumberOf(report, L"Enabled") != 0;
    const bool hasTrace = NumberOf(report, L"TraceLog") != 0;
    report.Item(L"Log", isOn ? L"on" : L"off");
    report.Item(L"Log file", file.empty() ? L"none" : file);
    report.Item(L"Log to debugger", hasTrace ? L"on" : L"off");
    for (const wchar_t* name :
         {L"Options", L"Filters", L"Categories", L"Types", L"MaxFileSize", L"MaxDataSize"})
        report.Item(std::wstring(L"Log ") + name, std::to_wstring(NumberOf(report, name)));
    if (isOn && file.empty() && !hasTrace)
        report.Problem(L"the log is on, but has neither a file nor debugger output",
                       L"set FileName or TraceLog, or set Enabled to 0");
    const std::wstring problem = file.empty() ? L"" : FileProblem(file);
    if (!problem.empty())
        report.Problem(L"the log file cannot be written: " + problem,
                       L"set FileName to a file in a folder that the hosts' accounts can write to");
}
