// The guard value of the compiler's stack protector, which runtime/ sets when the program starts.

#include <catch2/catch.hpp>

#include <cstdint>

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
extern "C" std::uintptr_t __stack_chk_guard;

TEST_CASE("StackGuard_ends_in_a_zero_byte_and_is_not_small") {
    CHECK((__stack_chk_guard & 0xFF) == 0);
    CHECK(__stack_chk_guard > 0x100); // a random value fails once in eight million runs
    CHECK(__stack_chk_guard != 0xFF0A0D00);
}
