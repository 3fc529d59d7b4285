#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

// Makes the library's calls to the system and the C runtime fail. Works on the shipped library: when it is
// mapped, before its first instruction runs, its import table is redirected (ImportTables.cpp). Only calls of
// the thread that creates Faults fail.

/// Whether the calls after the first failing call fail too.
enum class FaultMode {
    One,    ///< no: a temporary shortage
    AllFrom ///< yes: memory remains exhausted, the disk remains full
};

/// How an imported function fails, and the effect on the library's caller.
struct Failure {
    ULONG_PTR value;        ///< the function's return value
    DWORD lastError;        ///< 0: last error unchanged
    HRESULT surfacesAs;     ///< result of the interface method; S_OK: the library absorbs the failure
    const char* absorption; ///< why the library may absorb the failure
    bool afterTheCall;      ///< the function succeeds but reports failure
};

/// During its lifetime, calls of this thread fail.
class Faults {
public:
    /// `failing` is the index of the first call to fail, counted from 0.
    Faults(std::size_t failing, FaultMode mode) noexcept;
    ~Faults();
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    /// Whether the call to fail was reached.
    bool HaveStruck() const noexcept;
    /// Name of the first call that failed; null if none did.
    const char* FirstName() const noexcept;
    /// The HRESULTs that the failures may surface as, without duplicates.
    std::vector<HRESULT> Outcomes() const;
};

/// What the library has allocated and not freed.
struct Ledger {
    std::size_t blocks; ///< from the C runtime
    long texts;         ///< BSTRs, including those that the client has to free

    static Ledger Now() noexcept;
};

namespace FaultInjector {

/// Redirects the library's imports through the tables at every load from now on.
void Watch();

/// Whether the current call must fail. Counts the call.
bool Strikes(const char* name, const Failure& failure) noexcept;

void CountTexts(long more) noexcept;

/// Calls that failed since the program started.
std::size_t Injected() noexcept;
/// Describes the current fault, for messages of crashes.
void Describe(char* text, std::size_t size) noexcept;

} // namespace FaultInjector
