#pragma once

#include <windows.h>
#include <objbase.h>

#include <functional>

/// Runs the work in a new thread that has joined an apartment (COINIT_...), and waits for it. Meanwhile the
/// calling apartment answers calls, as a message loop does. What the work throws, a failed assertion too,
/// goes on in the caller. Assertions are safe in the work, because only one of the two threads runs at a
/// time.
void RunInApartment(DWORD apartment, const std::function<void()>& work);

/// Lets calls to objects of the calling apartment through until the handle is signalled; fails the test after
/// a minute.
void WaitAndAnswerCalls(HANDLE handle);

/// Shows the type library's marshaller where the registered library is, for its lifetime. The library
/// registers under its locale, TypeLib\{...}\1.0\409\win32; there are runtimes whose marshaller looks only
/// under TypeLib\{...}\1.0\0\win32 and so would find nothing.
class MarshallerKey {
public:
    MarshallerKey();
    MarshallerKey(const MarshallerKey&) = delete;
    MarshallerKey& operator=(const MarshallerKey&) = delete;
    ~MarshallerKey();
};
