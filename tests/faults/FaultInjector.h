#pragma once

#include <windows.h>

#include <cstddef>
#include <vector>

// Makes calls fail that the library makes to the system and to the C runtime. The library is the shipped one:
// as soon as it is mapped, before its first instruction runs, the entries of its import table are led through
// here (ImportTables.cpp). Only the calls of the thread that arms the injector fail.

/// What happens to the calls behind the one that fails.
enum class FaultMode {
    One,    ///< they succeed: a passing shortage
    AllFrom ///< they fail too: memory stays out, the disk stays full
};

/// How the failure of an imported function looks, and what may become of it.
struct Failure {
    DWORD value;        ///< what the function returns
    DWORD lastError;    ///< 0: leaves the thread's last error alone
    HRESULT surfacesAs; ///< what the caller of an interface method then gets; S_OK: the library absorbs it
    const char* absorption; ///< why a failure that is absorbed may be
    bool afterTheCall;      ///< the function does its work and reports a failure all the same
};

/// A failing call lies in the scope of one of these.
class Faults {
public:
    /// The calls are counted from 0.
    Faults(std::size_t failing, FaultMode mode) noexcept;
    ~Faults();
    Faults(const Faults&) = delete;
    Faults& operator=(const Faults&) = delete;

    /// Whether the call to fail was reached.
    bool HaveStruck() const noexcept;
    /// Name of the first call that failed; null if none did.
    const char* FirstName() const noexcept;
    /// What the failures may come to: each HRESULT once.
    std::vector<HRESULT> Outcomes() const;
};

/// What the library has taken from the C runtime and from OLE and not given back.
struct Ledger {
    long blocks; ///< of memory
    long texts;  ///< BSTRs: those that it handed out are freed by its client

    static Ledger Now() noexcept;
};

namespace FaultInjector {

/// Leads the imports of the library through the tables from now on, each time it is loaded. Ends the program
/// when the library imports what the tables do not know.
void Watch();

/// Whether the call that is about to be made has to fail.
bool Strikes(const char* name, const Failure& failure) noexcept;

void CountBlocks(long more) noexcept;
void CountTexts(long more) noexcept;

/// Calls that failed since the program started.
std::size_t Injected() noexcept;
/// For messages of tests that go astray: the call that is made to fail at the moment.
void Describe(char* text, std::size_t size) noexcept;

} // namespace FaultInjector
