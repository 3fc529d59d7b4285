#include "tests/support/ProgramFolder.h"

#include <windows.h>

#include <catch2/catch.hpp>

#include <string>
#include <vector>

// A stack overrun must reach the system as an unhandled exception: Windows reports those, but not a
// terminated program.

namespace {

struct Outcome {
    std::vector<DWORD> unhandled; ///< codes of unhandled exceptions
    DWORD exitCode;
};

PROCESS_INFORMATION StartDebugged(std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    REQUIRE(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, DEBUG_ONLY_THIS_PROCESS,
                           nullptr, nullptr, &startup, &process));
    return process;
}

Outcome RunDebugged(const std::wstring& commandLine) {
    const PROCESS_INFORMATION process = StartDebugged(commandLine);
    Outcome outcome{};
    for (bool runs = true; runs;) {
        DEBUG_EVENT event;
        REQUIRE(WaitForDebugEvent(&event, 60'000));
        DWORD answer = DBG_CONTINUE;
        if (event.dwDebugEventCode == EXCEPTION_DEBUG_EVENT) {
            const EXCEPTION_DEBUG_INFO& exception = event.u.Exception;
            if (exception.ExceptionRecord.ExceptionCode != static_cast<DWORD>(EXCEPTION_BREAKPOINT))
                answer = DBG_EXCEPTION_NOT_HANDLED;
            if (!exception.dwFirstChance)
                outcome.unhandled.push_back(exception.ExceptionRecord.ExceptionCode);
        } else if (event.dwDebugEventCode == CREATE_PROCESS_DEBUG_EVENT)
            CloseHandle(event.u.CreateProcessInfo.hFile);
        else if (event.dwDebugEventCode == LOAD_DLL_DEBUG_EVENT)
            CloseHandle(event.u.LoadDll.hFile);
        runs = event.dwDebugEventCode != EXIT_PROCESS_DEBUG_EVENT;
        REQUIRE(ContinueDebugEvent(event.dwProcessId, event.dwThreadId, answer));
    }
    REQUIRE(WaitForSingleObject(process.hProcess, 60'000) == WAIT_OBJECT_0);
    REQUIRE(GetExitCodeProcess(process.hProcess, &outcome.exitCode));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return outcome;
}

constexpr DWORD Overrun = 0xC0000409; // STATUS_STACK_BUFFER_OVERRUN

std::wstring OverrunProgram() {
    return L"\"" + BesideProgram("overrun.exe").wstring() + L"\"";
}

} // namespace

TEST_CASE("Overrun_of_a_stack_buffer_is_reported_as_a_crash") {
    const Outcome outcome = RunDebugged(OverrunProgram() + L" overrun");
    CHECK(outcome.unhandled == std::vector<DWORD>{Overrun});
    CHECK(outcome.exitCode == Overrun);
}

TEST_CASE("Overrun_program_without_an_overrun_returns_0") {
    const Outcome outcome = RunDebugged(OverrunProgram());
    CHECK(outcome.unhandled == std::vector<DWORD>{});
    CHECK(outcome.exitCode == 0);
}
