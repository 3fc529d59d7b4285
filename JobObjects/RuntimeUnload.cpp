#include "RuntimeUnload.h"

#include <cstddef> // says whose runtime this is

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// GCC's static runtime was written for programs: what its exception handling takes from the process (a
// thread-local storage slot, semaphores behind its mutexes, a pool of memory for exceptions thrown when
// memory is short) it never gives back. A library that is loaded and unloaded at will would use the process
// up: the slots alone run out after about a thousand cycles. So the library notes what the runtime takes, by
// standing in for the three imported functions that the runtime calls for it, and gives it back at the very
// end.

#include <windows.h>

#include <atomic>

namespace __gnu_cxx {
// The runtime's name. NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void __freeres(); // frees the pool; the runtime's own hook for tools that look for leaks
} // namespace __gnu_cxx

namespace {

/// Values taken and not given back yet; 0 is an empty place. When all places are taken, a value is not noted.
template<class Value, std::size_t Size>
class Taken {
public:
    void Note(Value value) noexcept { Replace(Value{}, value); }
    void Forget(Value value) noexcept { Replace(value, Value{}); }
    template<class GiveBack>
    void GiveAllBack(GiveBack giveBack) noexcept {
        for (std::atomic<Value>& place : m_places)
            if (const Value value = place.exchange(Value{}))
                giveBack(value);
    }

private:
    void Replace(Value from, Value to) noexcept {
        for (std::atomic<Value>& place : m_places) {
            Value expected = from;
            if (place.compare_exchange_strong(expected, to))
                return;
        }
    }

    std::atomic<Value> m_places[Size]{};
};

constinit Taken<DWORD, 8> slots; // one above the slot's index
constinit Taken<HANDLE, 32> semaphores;

template<class Function>
Function SystemFunction(const char* name) noexcept {
    FARPROC address = GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

DWORD WINAPI NotedTlsAlloc() noexcept {
    const DWORD slot = SystemFunction<decltype(&TlsAlloc)>("TlsAlloc")();
    if (slot != TLS_OUT_OF_INDEXES)
        slots.Note(slot + 1);
    return slot;
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
[[gnu::used]] decltype(&NotedTlsAlloc) importedTlsAlloc __asm__("__imp__TlsAlloc@0") = NotedTlsAlloc;
[[gnu::used]] decltype(&NotedCreateSemaphore)
    importedCreateSemaphore __asm__("__imp__CreateSemaphoreW@16") = NotedCreateSemaphore;
[[gnu::used]] decltype(&NotedCloseHandle)
    importedCloseHandle __asm__("__imp__CloseHandle@4") = NotedCloseHandle;
}

void ReleaseRuntime() noexcept {
    __gnu_cxx::__freeres();
    slots.GiveAllBack([](DWORD slot) { TlsFree(slot - 1); });
    semaphores.GiveAllBack([](HANDLE semaphore) { CloseHandle(semaphore); });
}

#else

void ReleaseRuntime() noexcept {
}

#endif
