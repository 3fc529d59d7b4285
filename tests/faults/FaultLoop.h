#pragma once

#include "FaultInjector.h"

#include "tests/support/ComClient.h"

#include <functional>
#include <string>

// Runs one piece of work again and again, each time with another of its calls made to fail, until it comes
// through without reaching the call.

/// Whether everything is to be run instead of the quick tier: FAULTS=all in the environment.
bool RunsEverything();

/// One run of the work.
struct FaultRun {
    std::size_t failing; ///< the call that fails
    FaultMode mode;
    bool struck;                   ///< false in the last run
    std::string name;              ///< of the import that failed
    std::vector<HRESULT> outcomes; ///< what the failures may come to; S_OK: they may be absorbed
    HRESULT result;                ///< of the work
};

/// "RegSetValueExW, call 12": for messages.
std::string Show(const FaultRun& run);

/// What is done in each run. Only work() has calls that fail.
struct FaultSubject {
    std::function<void()> prepare; ///< before each run; may be empty
    std::function<HRESULT()> work;
    std::function<void(const FaultRun&)> check; ///< after each run, the last one included
    std::function<void()> cleanUp;              ///< before the library's blocks are counted; may be empty
    bool countsTexts = true;                    ///< false where the library frees texts that others made
};

/// Every stride-th call fails in its turn. Returns the number of runs in which a call failed. Each run has to
/// leave the library's memory and texts as they were.
std::size_t FailEachCall(FaultMode mode, const FaultSubject& subject, std::size_t stride = 1);

/// What a failing run may return: the HRESULT that stands for a failure that was met, or what it returns when
/// nothing fails (expected) if each failure may be absorbed, or if it is a failure itself.
void CheckResult(const FaultRun& run, HRESULT expected);

/// Prints "faults, group: n" for run.sh to add up.
void PrintInjected(const std::string& group, std::size_t runs);

/// OLE keeps freed texts for later; they would be taken for leaks.
void SwitchTextCacheOff();
