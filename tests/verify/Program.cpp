#include "Program.h"

#include "common/QxSystem.h"
#include "common/QxTHandle.h"

#include <cwchar>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

/// A variable of this process's environment, which its child processes inherit, during its lifetime.
class Variable {
public:
    explicit Variable(const std::wstring& assignment) : m_name(assignment.substr(0, assignment.find(L'='))) {
        if (!m_name.empty())
            SetEnvironmentVariableW(m_name.c_str(), assignment.c_str() + m_name.size() + 1);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() {
        if (!m_name.empty())
            SetEnvironmentVariableW(m_name.c_str(), nullptr);
    }

private:
    std::wstring m_name;
};

/// A job, which ends its processes when it is closed.
HANDLE NewJob() {
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof(limits));
    return job;
}

std::wstring ProgramOf(ULONG_PTR id) {
    const QxKernelHandle process(
        OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, static_cast<DWORD>(id)));
    wchar_t path[MAX_PATH];
    DWORD length = MAX_PATH;
    return QueryFullProcessImageNameW(process.Get(), 0, path, &length) ? path : L"";
}

bool IsOfSystem(const std::wstring& program) {
    wchar_t folder[MAX_PATH];
    const UINT length = GetSystemWindowsDirectoryW(folder, MAX_PATH);
    return _wcsnicmp(program.c_str(), folder, length) == 0;
}

/// A program of the job that is not one of the system, such as a surrogate; empty if there is none.
std::wstring OwnProgramIn(HANDLE job) {
    struct {
        JOBOBJECT_BASIC_PROCESS_ID_LIST list;
        ULONG_PTR more[63];
    } processes{};
    QueryInformationJobObject(job, JobObjectBasicProcessIdList, &processes, sizeof(processes), nullptr);
    for (DWORD i = 0; i < processes.list.NumberOfProcessIdsInList; ++i)
        if (std::wstring program = ProgramOf(processes.list.ProcessIdList[i]);
            !program.empty() && !IsOfSystem(program))
            return program;
    return {};
}

/// The same after a moment, in which processes may end.
std::wstring ProgramLeftIn(HANDLE job) {
    std::wstring program = OwnProgramIn(job);
    for (int tries = 0; tries < 20 && !program.empty(); ++tries) {
        Sleep(100);
        program = OwnProgramIn(job);
    }
    return program;
}

HANDLE OpenInherited(const wchar_t* path, DWORD access, DWORD creation) {
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    return CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, creation,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// Starts the program suspended.
bool Start(const Program& program, PROCESS_INFORMATION& process) {
    const QxKernelHandle input(OpenInherited(L"NUL", GENERIC_READ, OPEN_EXISTING));
    const QxKernelHandle output(OpenInherited(program.outputFile.c_str(), FILE_APPEND_DATA, CREATE_ALWAYS));
    const Variable variable(program.environment);
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input.Get();
    startup.hStdOutput = startup.hStdError = output.Get();
    std::wstring commandLine = program.commandLine;
    const auto create = [&](DWORD flags) {
        return CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED | flags,
                              nullptr, program.folder.c_str(), &startup, &process) != FALSE;
    };
    // Windows 7 has no job inside another one, but a job such as that of Explorer lets processes leave.
    return create(CREATE_BREAKAWAY_FROM_JOB) || (GetLastError() == ERROR_ACCESS_DENIED && create(0));
}

std::string FileBytes(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::wstring ExitCodeText(DWORD code) {
    wchar_t text[32];
    // Crashes end with an exception's code.
    std::swprintf(text, 32, code >= 0x80000000 ? L"0x%08lX" : L"%lu", code);
    return text;
}

} // namespace

std::wstring Ending::Problem(DWORD expectedExitCode) const {
    if (startError != 0)
        return L"cannot be started: " + QxMisc::GetSystemMessage(startError);
    if (timedOut)
        return L"reached its time limit";
    if (exitCode != expectedExitCode)
        return L"ended with " + ExitCodeText(exitCode) + L" instead of " + ExitCodeText(expectedExitCode);
    if (!leftProgram.empty())
        return L"left running: " + leftProgram;
    return {};
}

Ending Run(const Program& program) {
    Ending ending;
    const QxKernelHandle job(NewJob());
    PROCESS_INFORMATION started{};
    // A start that fails once says nothing about the program: a busy system may lack the resources for a
    // moment.
    if (!Start(program, started) && (Sleep(1000), !Start(program, started))) {
        ending.startError = GetLastError();
        return ending;
    }
    const QxKernelHandle process(started.hProcess), thread(started.hThread);
    AssignProcessToJobObject(job.Get(), process.Get());
    ResumeThread(thread.Get());
    ending.timedOut = WaitForSingleObject(process.Get(), program.seconds * 1000) != WAIT_OBJECT_0;
    if (ending.timedOut) {
        TerminateProcess(process.Get(), 1); // also if the job does not have it
        TerminateJobObject(job.Get(), 1);
        WaitForSingleObject(process.Get(), 10'000);
    }
    if (!ending.timedOut)
        ending.leftProgram = ProgramLeftIn(job.Get());
    TerminateJobObject(job.Get(), 1);
    GetExitCodeProcess(process.Get(), &ending.exitCode);
    ending.output = FileBytes(program.outputFile);
    return ending;
}
