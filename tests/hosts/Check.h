#pragma once

#include <cstdio>
#include <cstdlib>

// Checks for programs without a test framework: the first failure ends the program.

[[noreturn]] inline void Fail(const char* what, const char* file, int line) {
    std::printf("%s(%d): failed: %s\n", file, line, what);
    std::fflush(stdout);
    std::_Exit(1);
}

#define CHECK_THAT(condition) ((condition) ? void() : Fail(#condition, __FILE__, __LINE__))
