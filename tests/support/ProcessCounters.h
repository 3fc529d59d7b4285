#pragma once

#include <cstddef>
#include <string>

/// The resources of a process, for comparison before and after work that must not leak.
struct ProcessCounters {
    std::size_t heapBlocks; ///< allocated blocks of all heaps
    std::size_t heapBytes;
    std::size_t handles;
    std::size_t tlsSlots; ///< slots in use

    static ProcessCounters Now();
};

/// "heap blocks 1 -> 2, ...": the counts before and after.
std::string Growth(const ProcessCounters& before, const ProcessCounters& after);

#define CHECK_NO_GROWTH(before, after)                                                                       \
    do {                                                                                                     \
        CHECK((after).heapBlocks <= (before).heapBlocks);                                                    \
        CHECK((after).heapBytes <= (before).heapBytes);                                                      \
        CHECK((after).handles <= (before).handles);                                                          \
        CHECK((after).tlsSlots <= (before).tlsSlots);                                                        \
    } while (false)
