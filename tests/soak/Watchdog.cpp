#include "Watchdog.h"

#include <atomic>
#include <cstdio>

namespace {

constexpr DWORD LongestStep = 120000;

const char* runningTest = "";
unsigned long runningSeed = 0;
std::atomic<int> currentNumber{-1};
std::atomic<const wchar_t*> currentSubject{L""};
std::atomic<unsigned> stepCount{0};

[[noreturn]] void GiveUp(const char* reason, unsigned exitCode) {
    std::fprintf(stderr, "%s: %s in step %d, %ls, of seed %lu\n", runningTest, reason, currentNumber.load(),
                 currentSubject.load(), runningSeed);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), exitCode);
    for (;;)
        Sleep(INFINITE);
}

DWORD WINAPI Watch(void* end) {
    unsigned seen = stepCount;
    while (WaitForSingleObject(end, LongestStep) == WAIT_TIMEOUT) {
        if (stepCount == seen)
            GiveUp("no end", 250);
        seen = stepCount;
    }
    return 0;
}

LONG WINAPI TellCrash(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    auto* const address = static_cast<char*>(record.ExceptionAddress);
    HMODULE module = nullptr;
    char path[MAX_PATH] = "no module";
    if (GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                               GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           address, &module))
        GetModuleFileNameA(module, path, MAX_PATH);
    char reason[MAX_PATH + 64];
    std::snprintf(reason, sizeof(reason), "crash 0x%08lX at %s+0x%lX", record.ExceptionCode, path,
                  static_cast<unsigned long>(address - reinterpret_cast<char*>(module)));
    GiveUp(reason, 251);
}

} // namespace

Watchdog::Watchdog(const char* test, unsigned long seed)
    : m_end(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      m_thread((runningTest = test, runningSeed = seed, SetUnhandledExceptionFilter(TellCrash),
                CreateThread(nullptr, 0, Watch, m_end, 0, nullptr))) {
}

Watchdog::~Watchdog() {
    SetEvent(m_end);
    WaitForSingleObject(m_thread, INFINITE);
    CloseHandle(m_thread);
    CloseHandle(m_end);
    SetUnhandledExceptionFilter(nullptr);
}

void Watchdog::Step(int number, const wchar_t* subject) {
    currentNumber = number;
    currentSubject = subject;
    ++stepCount;
}
