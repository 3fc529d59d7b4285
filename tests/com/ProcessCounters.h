#pragma once

#include <cstddef>

/// What a process holds at one moment: to be compared before and after work that should leave nothing behind.
struct ProcessCounters {
    std::size_t heapBlocks; ///< allocated blocks of all heaps
    std::size_t heapBytes;
    std::size_t handles;
    std::size_t tlsSlots; ///< slots in use

    static ProcessCounters Now();
};
