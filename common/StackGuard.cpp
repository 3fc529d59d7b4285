#include <cstddef> // says whose runtime this is

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// What -fstack-protector-strong calls for. The compiler's own version loads a provider of random numbers
// before the library's first line runs, which must not happen while the system holds its loader lock. This
// one mixes what differs from process to process and costs nothing to ask.

#include <windows.h>

#include <cstdint>
#include <initializer_list>

namespace {

/// At least as far apart as their inputs: multiplication by an odd number loses nothing.
std::uint32_t Mixed(std::uint32_t value, std::uint32_t more) noexcept {
    value = (value ^ more) * 0x9E3779B1u;
    return value ^ value >> 15;
}

std::uint32_t ProcessValue(const void* somewhere) noexcept {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    std::uint32_t value = now.dwLowDateTime;
    for (const std::uint32_t more :
         {static_cast<std::uint32_t>(now.dwHighDateTime), static_cast<std::uint32_t>(counter.LowPart),
          static_cast<std::uint32_t>(GetCurrentProcessId()), static_cast<std::uint32_t>(GetCurrentThreadId()),
          static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(somewhere))})
        value = Mixed(value, more);
    // The zero byte ends a text that is copied over the end of its buffer.
    return value << 8;
}

} // namespace

// The compiler's names.
extern "C" {
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
std::uintptr_t __stack_chk_guard = 0xFF0A0D00;
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
[[noreturn]] void __stack_chk_fail() {
    // At once: whoever overwrote the stack may have overwritten whatever else would run.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(STATUS_STACK_BUFFER_OVERRUN));
    __builtin_trap();
}
}

namespace {

// Runs before any protected function: one that is under way would take the new value for an overrun.
[[gnu::constructor, gnu::no_stack_protector]] void SetStackGuard() noexcept {
    __stack_chk_guard = ProcessValue(__builtin_frame_address(0));
}

} // namespace

#endif
