#include "RuntimeUnload.h"

#include <cstddef> // says whose runtime this is

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// GCC's static runtime was written for programs: the semaphores behind the locks of its exception handling it
// never gives back. A library that is loaded and unloaded at will would use the process up. So the library
// notes what the runtime takes, by standing in for the two imported functions that the runtime calls for it,
// and gives it back at the very end. (What else the runtime would take, see RuntimeExceptions.cpp.)

#include <windows.h>

#include <atomic>

namespace {

/// Handles taken and not given back yet; null is an empty place. When all places are taken, one is not noted.
class Taken {
public:
    void Note(HANDLE handle) noexcept { Replace(nullptr, handle); }
    void Forget(HANDLE handle) noexcept { Replace(handle, nullptr); }
    void GiveAllBack() noexcept {
        for (std::atomic<HANDLE>& place : m_places)
            if (HANDLE handle = place.exchange(nullptr))
                CloseHandle(handle);
    }

private:
    void Replace(HANDLE from, HANDLE to) noexcept {
        for (std::atomic<HANDLE>& place : m_places) {
            HANDLE expected = from;
            if (place.compare_exchange_strong(expected, to))
                return;
        }
    }

    std::atomic<HANDLE> m_places[32]{};
};

constinit Taken semaphores;

template<class Function>
Function SystemFunction(const char* name) noexcept {
    FARPROC address = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

HANDLE WINAPI NotedCreateSemaphore(SECURITY_ATTRIBUTES* security, LONG initial, LONG maximum,
                                   const wchar_t* name) noexcept {
    HANDLE semaphore =
        SystemFunction<decltype(&CreateSemaphoreW)>("CreateSemaphoreW")(security, initial, maximum, name);
    if (semaphore)
        semaphores.Note(semaphore);
    return semaphore;
}

BOOL WINAPI NotedCloseHandle(HANDLE handle) noexcept {
    static constinit std::atomic<decltype(&CloseHandle)> close{nullptr};
    if (!close)
        close = SystemFunction<decltype(&CloseHandle)>("CloseHandle");
    if (handle)
        semaphores.Forget(handle);
    return close.load()(handle);
}

} // namespace

// The names under which the linker looks for the imported functions of this library.
extern "C" {
[[gnu::used]] decltype(&NotedCreateSemaphore)
    importedCreateSemaphore __asm__("__imp__CreateSemaphoreW@16") = NotedCreateSemaphore;
[[gnu::used]] decltype(&NotedCloseHandle)
    importedCloseHandle __asm__("__imp__CloseHandle@4") = NotedCloseHandle;
}

void ReleaseRuntime() noexcept {
    semaphores.GiveAllBack();
}

#else

void ReleaseRuntime() noexcept {
}

#endif
