#pragma once

#include <cstddef>

/// What the library has allocated from the C runtime and not freed, counted in its own imports: exact on
/// every system, whose heap also holds what the system caches. Counts the loads after the program's start.
struct LibraryMemory {
    std::size_t blocks;
    std::size_t bytes;

    static LibraryMemory Now() noexcept;
};
