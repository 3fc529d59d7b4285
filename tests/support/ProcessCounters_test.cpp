#include "tests/support/ProcessCounters.h"

#include <catch2/catch.hpp>

#include <memory>

#include <windows.h>

TEST_CASE("ProcessCounters_count_new_and_freed_handles_blocks_and_TLS_slots") {
    ProcessCounters::Now(); // warm up
    const ProcessCounters before = ProcessCounters::Now();
    constexpr std::size_t handleCount = 600; // more than the gap at which counting stops
    std::unique_ptr<HANDLE[]> handles(new HANDLE[handleCount]);
    for (std::size_t i = 0; i < handleCount; ++i)
        handles[i] = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    const DWORD slot = TlsAlloc();
    const ProcessCounters during = ProcessCounters::Now();
    CHECK(before.handles > 0);
    CHECK(during.handles == before.handles + handleCount);
    CHECK(during.tlsSlots == before.tlsSlots + 1);
    CHECK(during.heapBlocks > before.heapBlocks);
    CHECK(during.heapBytes >= before.heapBytes + handleCount * sizeof(HANDLE));

    for (std::size_t i = 0; i < handleCount; ++i)
        CloseHandle(handles[i]);
    handles.reset();
    TlsFree(slot);
    const ProcessCounters after = ProcessCounters::Now();
    CHECK(after.handles == before.handles);
    CHECK(after.tlsSlots == before.tlsSlots);
    CHECK(after.heapBlocks == before.heapBlocks);
}
