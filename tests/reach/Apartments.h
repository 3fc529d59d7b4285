#pragma once

#include <windows.h>
#include <objbase.h>

#include <functional>

/// Runs the work on a new thread in an apartment of its own kind (COINIT_...) and waits for it. Meanwhile the
/// calling apartment answers calls, as a message loop does. Exceptions of the work, failed assertions
/// included, are rethrown in the caller. The work may use assertions: only one of the two threads runs at a
/// time.
void RunInApartment(DWORD apartment, const std::function<void()>& work);

/// Answers calls to objects of the calling apartment until the handle is signalled. Ends the process after a
/// minute.
void WaitAndAnswerCalls(HANDLE handle);

/// Registers the type library for the neutral locale as well, during its lifetime. The library registers
/// under its own locale, TypeLib\{...}\1.0\409, but the marshaller of some runtimes only looks under
/// TypeLib\{...}\1.0\0.
class MarshallerKey {
public:
    MarshallerKey();
    MarshallerKey(const MarshallerKey&) = delete;
    MarshallerKey& operator=(const MarshallerKey&) = delete;
    ~MarshallerKey();
};
