#include <cstddef> // defines __GLIBCXX__

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// What -fstack-protector-strong needs. The compiler's own version loads the system's provider of random
// numbers before the library's first line runs, while the system holds its loader lock. This one mixes values
// that differ from process to process and cost nothing to read. This file itself is compiled without the
// protector: the function that sets the guard value would take the new value for an overrun.

#include <windows.h>

#include <cstdint>
#include <initializer_list>

namespace {

/// Loses nothing of its inputs: multiplication by an odd number can be undone.
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
    // The zero byte stops a text that overruns its buffer from writing the value.
    return value << 8;
}

} // namespace

// The compiler's names.
extern "C" {
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
std::uintptr_t __stack_chk_guard = 0xFF0A0D00;
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
[[noreturn]] void __stack_chk_fail() {
    // The system's fast-fail: a crash report, and no more code of a process whose stack is damaged.
    __asm__ volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
    __builtin_unreachable();
}
}

namespace {

// A constructor: runs before every other function of the library that has a buffer.
[[gnu::constructor]] void SetStackGuard() noexcept {
    __stack_chk_guard = ProcessValue(__builtin_frame_address(0));
}

} // namespace

#endif
