#include "tests/support/LibraryMemory.h"

#include "tests/support/LibraryImports.h"

#include <malloc.h>

#include <atomic>
#include <cstring>

namespace {

std::atomic<std::size_t> blocksInUse{0};
std::atomic<std::size_t> bytesInUse{0};

void* (*originalMalloc)(std::size_t);
void* (*originalCalloc)(std::size_t, std::size_t);
void* (*originalRealloc)(void*, std::size_t);
void (*originalFree)(void*);

void* Added(void* block) {
    if (block) {
        ++blocksInUse;
        bytesInUse += _msize(block);
    }
    return block;
}

void Remove(std::size_t size) {
    --blocksInUse;
    bytesInUse -= size;
}

void* Malloc(std::size_t size) {
    return Added(originalMalloc(size));
}

void* Calloc(std::size_t count, std::size_t size) {
    return Added(originalCalloc(count, size));
}

void* Realloc(void* block, std::size_t size) {
    const std::size_t before = block ? _msize(block) : 0;
    void* const moved = originalRealloc(block, size);
    if (block && (moved || size == 0))
        Remove(before);
    return Added(moved);
}

void Free(void* block) {
    if (block)
        Remove(_msize(block));
    originalFree(block);
}

template<class Function>
void Redirect(void*& slot, Function& original, Function replacement) {
    std::memcpy(&original, &slot, sizeof(original));
    WriteImport(slot, reinterpret_cast<void*>(replacement));
}

void CountAllocations(HMODULE library) {
    ForEachImport(library, [](const char* name, void*& slot) {
        if (std::strcmp(name, "malloc") == 0)
            Redirect(slot, originalMalloc, &Malloc);
        else if (std::strcmp(name, "calloc") == 0)
            Redirect(slot, originalCalloc, &Calloc);
        else if (std::strcmp(name, "realloc") == 0)
            Redirect(slot, originalRealloc, &Realloc);
        else if (std::strcmp(name, "free") == 0)
            Redirect(slot, originalFree, &Free);
    });
}

/// Before the program loads the library.
[[maybe_unused]] const bool Counting = [] {
    AtEachLibraryLoad(CountAllocations);
    return true;
}();

} // namespace

LibraryMemory LibraryMemory::Now() noexcept {
    return {blocksInUse, bytesInUse};
}
