#include "ProcessCounters.h"

#include <windows.h>
#include <winternl.h>

#include <cstdint>
#include <cstdio>
#include <vector>

namespace {

void CountHeap(HANDLE heap, ProcessCounters& counters) {
    HeapLock(heap);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heap, &entry)) {
        if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) {
            ++counters.heapBlocks;
            counters.heapBytes += entry.cbData;
        }
    }
    HeapUnlock(heap);
}

void CountHeaps(ProcessCounters& counters) {
    HANDLE heaps[64];
    const DWORD count = GetProcessHeaps(64, heaps);
    for (DWORD i = 0; i < count && i < 64; ++i)
        CountHeap(heaps[i], counters);
}

/// The system's table of all handles: the only count of a process's handles that is right everywhere.
std::size_t CountHandles() {
    struct Entry {
        ULONG processId;
        std::uint8_t type;
        std::uint8_t flags;
        USHORT value;
        void* object;
        ACCESS_MASK access;
    };
    constexpr auto systemHandleInformation = static_cast<SYSTEM_INFORMATION_CLASS>(16);
    std::vector<std::uint8_t> table(1 << 20);
    ULONG needed = 0;
    while (NtQuerySystemInformation(systemHandleInformation, table.data(), static_cast<ULONG>(table.size()),
                                    &needed) != 0)
        table.resize(table.size() * 2);
    const auto total = *reinterpret_cast<const ULONG*>(table.data());
    const auto* entries = reinterpret_cast<const Entry*>(table.data() + sizeof(ULONG));
    std::size_t own = 0;
    for (ULONG i = 0; i < total; ++i)
        own += entries[i].processId == GetCurrentProcessId();
    return own;
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
    return counters;
}

std::string Growth(const ProcessCounters& before, const ProcessCounters& after) {
    char text[200];
    std::snprintf(text, sizeof(text),
                  "heap blocks %zu -> %zu, heap bytes %zu -> %zu, handles %zu -> %zu, TLS slots %zu -> %zu",
                  before.heapBlocks, after.heapBlocks, before.heapBytes, after.heapBytes, before.handles,
                  after.handles, before.tlsSlots, after.tlsSlots);
    return text;
}
