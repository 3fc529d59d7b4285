#include "tests/support/ComClient.h"
#include "tests/support/Library.h"
#include "tests/support/ProcessCounters.h"

#include <catch2/catch.hpp>

#include <memory>
#include <vector>

#include <windows.h>

TEST_CASE("ProcessCounters_count_new_and_freed_handles_blocks_and_TLS_slots") {
    ProcessCounters::Now(); // warm up
    const ProcessCounters before = ProcessCounters::Now();
    constexpr std::size_t count = 600; // more than the gap at which counting stops
    std::vector<HANDLE> handles(count);
    std::vector<std::unique_ptr<char[]>> blocks(count);
    for (std::size_t i = 0; i < count; ++i) {
        handles[i] = CreateEventW(nullptr, TRUE, FALSE, nullptr);
        blocks[i].reset(new char[65536]); // heaps keep small freed blocks, and may count them
    }
    const DWORD slot = TlsAlloc();
    const ProcessCounters during = ProcessCounters::Now();
    CHECK(before.handles > 0);
    CHECK(during.handles == before.handles + count);
    CHECK(during.tlsSlots == before.tlsSlots + 1);
    CHECK(during.heapBlocks >= before.heapBlocks + count);

    for (std::size_t i = 0; i < count; ++i)
        CloseHandle(handles[i]);
    blocks.clear();
    TlsFree(slot);
    const ProcessCounters after = ProcessCounters::Now();
    CHECK(after.handles == before.handles);
    CHECK(after.tlsSlots == before.tlsSlots);
    CHECK(after.heapBlocks <= during.heapBlocks - count);
}

TEST_CASE("LibraryMemory_counts_what_an_object_allocates_until_its_release") {
    const Library library;
    const auto create = [&] {
        ComPtr<IClassFactory> factory;
        REQUIRE_HR(library.GetClassObject(LibraryClassNamed("PrintJob").classId, IID_IClassFactory,
                                          factory.PutVoid()),
                   S_OK);
        ComPtr<IUnknown> record;
        REQUIRE_HR(factory->CreateInstance(nullptr, IID_IUnknown, record.PutVoid()), S_OK);
        return record;
    };
    create(); // the library keeps what it allocates for the first object
    const LibraryMemory before = LibraryMemory::Now();
    auto record = create();
    const LibraryMemory during = LibraryMemory::Now();
    CHECK(during.blocks > before.blocks);
    CHECK(during.bytes > before.bytes);
    record = {};
    CHECK(LibraryMemory::Now().blocks == before.blocks);
    CHECK(LibraryMemory::Now().bytes == before.bytes);
}
