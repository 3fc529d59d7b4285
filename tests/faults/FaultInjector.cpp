#include "FaultInjector.h"

#include "ImportTables.h"

#include "tests/support/LibraryImports.h"
#include "tests/support/LibraryMemory.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <iterator>

namespace {

struct State {
    DWORD thread = 0; ///< 0: not armed
    std::size_t failing = 0;
    FaultMode mode = FaultMode::One;
    std::size_t calls = 0;
    std::size_t injected = 0;
    const char* firstName = nullptr;
    HRESULT outcomes[32] = {};
    std::size_t outcomeCount = 0;
};

State state;
std::atomic<long> textsInUse{0};

LONG WINAPI AtCrash(EXCEPTION_POINTERS* pointers) {
    char text[200];
    FaultInjector::Describe(text, sizeof(text));
    std::fprintf(stderr, "crash 0x%08lX at %p: %s\n", pointers->ExceptionRecord->ExceptionCode,
                 pointers->ExceptionRecord->ExceptionAddress, text);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 252);
    return EXCEPTION_EXECUTE_HANDLER;
}

} // namespace

Faults::Faults(std::size_t failing, FaultMode mode) noexcept {
    const std::size_t injected = state.injected;
    state = State{};
    state.injected = injected;
    state.failing = failing;
    state.mode = mode;
    state.thread = GetCurrentThreadId();
}

Faults::~Faults() {
    state.thread = 0;
}

bool Faults::HaveStruck() const noexcept {
    return state.firstName != nullptr;
}

const char* Faults::FirstName() const noexcept {
    return state.firstName;
}

std::vector<HRESULT> Faults::Outcomes() const {
    return std::vector<HRESULT>(state.outcomes, state.outcomes + state.outcomeCount);
}

Ledger Ledger::Now() noexcept {
    return {LibraryMemory::Now().blocks, textsInUse};
}

void FaultInjector::Watch() {
    [[maybe_unused]] static const bool watching = [] {
        SetUnhandledExceptionFilter(AtCrash);
        AtEachLibraryLoad(LeadImportsThroughTables);
        return true;
    }();
}

bool FaultInjector::Strikes(const char* name, const Failure& failure) noexcept {
    if (state.thread != GetCurrentThreadId())
        return false;
    const std::size_t call = state.calls++;
    if (call < state.failing || (call > state.failing && state.mode == FaultMode::One))
        return false;
    ++state.injected;
    if (!state.firstName)
        state.firstName = name;
    HRESULT* const end = state.outcomes + state.outcomeCount;
    if (std::find(state.outcomes, end, failure.surfacesAs) == end &&
        state.outcomeCount < std::size(state.outcomes))
        state.outcomes[state.outcomeCount++] = failure.surfacesAs;
    return true;
}

void FaultInjector::CountTexts(long more) noexcept {
    textsInUse += more;
}

std::size_t FaultInjector::Injected() noexcept {
    return state.injected;
}

void FaultInjector::Describe(char* text, std::size_t size) noexcept {
    std::snprintf(text, size, "call %zu (%s) made to fail%s", state.failing,
                  state.firstName ? state.firstName : "not reached",
                  state.mode == FaultMode::One ? "" : ", and all later calls");
}
