#pragma once

#include "FaultInjector.h"

#include "tests/support/ComClient.h"

#include <functional>
#include <string>

// Repeats one piece of work and makes a later call fail each time, until the work completes before it reaches
// the failing call.

/// Whether FAULTS=all in the environment requests all faults instead of the quick tier.
bool RunsEverything();

/// One run of the work.
struct FaultRun {
    std::size_t failing; ///< index of the first failing call
    FaultMode mode;
    bool struck;                   ///< false in the last run
    std::string name;              ///< first failed import
    std::vector<HRESULT> outcomes; ///< what the failures may surface as; S_OK: absorbed
    HRESULT result;                ///< returned by the work
};

/// "RegSetValueExW, call 12": for messages.
std::string Show(const FaultRun& run);

/// The steps of each run. Calls fail only in work().
struct FaultSubject {
    std::function<void()> prepare; ///< before each run; may be empty
    std::function<HRESULT()> work;
    std::function<void(const FaultRun&)> check; ///< after each run, the last one included
    std::function<void()> cleanUp;              ///< before the leak check; may be empty
    bool countsTexts = true;                    ///< false if the library frees BSTRs allocated by others
};

/// Makes every stride-th call fail in turn. Checks after each run that the library leaked no memory and no
/// BSTR. Returns the number of runs with a fault.
std::size_t FailEachCall(FaultMode mode, const FaultSubject& subject, std::size_t stride = 1);

/// Checks a run's result: the HRESULT of one of its failures, or `expected`, the result without faults, if
/// all failures may be absorbed or `expected` is itself a failure.
void CheckResult(const FaultRun& run, HRESULT expected);

/// Prints "faults, group: n"; run.sh adds the numbers.
void PrintInjected(const std::string& group, std::size_t runs);

/// OLE caches freed BSTRs, which would count as leaks.
void SwitchTextCacheOff();
