#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Runs one input; calls Fail on an error. Each harness defines it; the fuzzer (Engine.cpp) and the replay of
/// stored inputs (Replay.cpp) call it.
void RunInput(std::string_view bytes);

/// Shared by the harnesses.
namespace Fuzzing {

/// Prints the error and aborts.
[[noreturn]] void Fail(const char* what);

inline void Require(bool condition, const char* what) {
    if (!condition)
        Fail(what);
}

/// One character per byte. The upper quarter of the byte values becomes characters whose low byte is markup
/// or a digit, which catches code that compares only low bytes.
std::wstring Widen(std::string_view bytes);

/// Removes and returns the bytes before the first line feed, or all if there is none.
std::string_view TakeLine(std::string_view& bytes);

/// Removes four bytes and returns them as a number; missing bytes are 0.
std::uint32_t TakeNumber(std::string_view& bytes);

} // namespace Fuzzing
