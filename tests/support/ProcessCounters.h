#pragma once

#include "tests/support/LibraryMemory.h"

#include <cstddef>
#include <string>

/// The resources of a process, for comparison before and after work that must not leak.
struct ProcessCounters {
    LibraryMemory library;
    std::size_t heapBlocks; ///< of all heaps; Wine 10 caches some, and counts a group of small ones as one
    std::size_t handles;
    std::size_t tlsSlots; ///< slots in use

    static ProcessCounters Now();
};

/// "heap blocks 1 -> 2, ...": the counts before and after.
std::string Growth(const ProcessCounters& before, const ProcessCounters& after);

/// Whether the work, which ran so many times, leaked a block of the system each time, such as a BSTR.
inline bool HeapGrewEachTime(const ProcessCounters& before, const ProcessCounters& after, int times) {
    return after.heapBlocks >= before.heapBlocks + static_cast<std::size_t>(times);
}

/// Checks that the work, which ran `times` times, leaked nothing.
#define CHECK_NO_GROWTH(before, after, times)                                                                \
    do {                                                                                                     \
        CHECK((after).library.blocks <= (before).library.blocks);                                            \
        CHECK((after).library.bytes <= (before).library.bytes);                                              \
        CHECK_FALSE(HeapGrewEachTime(before, after, times));                                                 \
        CHECK((after).handles <= (before).handles);                                                          \
        CHECK((after).tlsSlots <= (before).tlsSlots);                                                        \
    } while (false)
