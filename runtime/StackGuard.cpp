#include <cstddef> // defines __GLIBCXX__

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// Guard value and failure handler of -fstack-protector-strong. The compiler's own version loads the system's
// random number provider under the loader lock. This one hashes values that differ between processes and are
// cheap to read. This file is compiled without the protector: SetStackGuard would take its own change for an
// overrun.

#include <windows.h>

#include <cstdint>
#include <initializer_list>

namespace {

/// Loses no entropy: multiplication by an odd number is invertible.
std::uint64_t Mixed(std::uint64_t value, std::uint64_t more) noexcept {
    value = (value ^ more) * 0x9E3779B97F4A7C15u;
    return value ^ value >> 31;
}

std::uintptr_t ProcessValue(const void* somewhere) noexcept {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    LARGE_INTEGER counter;
    QueryPerformanceCounter(&counter);
    std::uint64_t value = now.dwLowDateTime;
    for (const std::uint64_t more :
         {static_cast<std::uint64_t>(now.dwHighDateTime), static_cast<std::uint64_t>(counter.QuadPart),
          static_cast<std::uint64_t>(GetCurrentProcessId()), static_cast<std::uint64_t>(GetCurrentThreadId()),
          static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(somewhere))})
        value = Mixed(value, more);
    // The zero byte keeps an overrunning string copy from writing the value.
    return static_cast<std::uintptr_t>(value) << 8;
}

} // namespace

// Names of the compiler.
extern "C" {
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
std::uintptr_t __stack_chk_guard = 0xFF0A0D00;
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
[[noreturn]] void __stack_chk_fail() {
    // Fast-fail: a crash report, without running more code on the damaged stack.
    __asm__ volatile("int $0x29" : : "c"(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE));
    __builtin_unreachable();
}
}

namespace {

// A constructor, so that it runs before every function with a buffer.
[[gnu::constructor]] void SetStackGuard() noexcept {
    __stack_chk_guard = ProcessValue(__builtin_frame_address(0));
}

} // namespace

#endif
