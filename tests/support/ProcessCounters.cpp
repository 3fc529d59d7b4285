#include "tests/support/ProcessCounters.h"

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

void CountHeap(HANDLE heap, ProcessCounters& counters) {
    HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
            ++counters.heapBlocks;
    }
    HeapUnlock(heap);
}

void CountHeaps(ProcessCounters& counters) {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count && i < 64; ++i)
        CountHeap(heaps[i], counters);
}

/// Where the system has no count, tries each value: handles are multiples of 4, and the lowest free one is
/// used. SystemHandleInformation cannot replace it: it can crash Wine's server, and every program with it,
/// while other processes start or end.
std::size_t CountHandles() {
    DWORD counted = 0;
    if (GetProcessHandleCount(GetCurrentProcess(), &counted) && counted > 0)
        return counted;
    constexpr std::uintptr_t longestGap = 512 * 4;
    std::size_t found = 0;
    std::uintptr_t last = 0;
    DWORD flags = 0;
    for (std::uintptr_t value = 4; value <= last + longestGap; value += 4) {
        if (GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags)) {
            ++found;
            last = value;
        }
    }
    return found;
}

std::size_t CountTlsSlots() {
    constexpr std::size_t allSlots = 64 + 1024;
    std::vector<DWORD> taken;
    taken.reserve(allSlots);
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc())
        taken.push_back(slot);
    for (DWORD slot : taken)
        TlsFree(slot);
    return allSlots - taken.size();
}

} // namespace

ProcessCounters ProcessCounters::Now() {
    ProcessCounters counters{};
    counters.tlsSlots = CountTlsSlots();
    counters.handles = CountHandles();
    CountHeaps(counters);
    counters.library = LibraryMemory::Now();
    return counters;
}

std::string Growth(const ProcessCounters& before, const ProcessCounters& after) {
    char text[200];
    std::snprintf(text, sizeof(text),
                  "library blocks %zu -> %zu, library bytes %zu -> %zu, heap blocks %zu -> %zu, "
                  "handles %zu -> %zu, TLS slots %zu -> %zu",
                  before.library.blocks, after.library.blocks, before.library.bytes, after.library.bytes,
                  before.heapBlocks, after.heapBlocks, before.handles, after.handles, before.tlsSlots,
                  after.tlsSlots);
    return text;
}
