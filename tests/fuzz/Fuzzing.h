#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// A harness: runs one input and does not return when something is wrong. Each harness file defines it; a
/// fuzzer (Engine.cpp) and the replay of stored inputs (Replay.cpp) call it.
void RunInput(std::string_view bytes);

/// What the harnesses share.
namespace Fuzzing {

/// Prints what is wrong and aborts the program.
[[noreturn]] void Fail(const char* what);

inline void Require(bool condition, const char* what) {
    if (!condition)
        Fail(what);
}

/// One character a byte. The upper quarter of the bytes becomes characters whose low byte is a special
/// character of markup or a digit, which code that looks at single bytes would mistake for it.
std::wstring Widen(std::string_view bytes);

/// Cuts off the bytes before the first line feed, or all of them without one.
std::string_view TakeLine(std::string_view& bytes);

/// Cuts off four bytes; missing ones count as 0.
std::uint32_t TakeNumber(std::string_view& bytes);

} // namespace Fuzzing
