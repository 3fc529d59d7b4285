#include "AllocationCount.h"

#include <algorithm>
#include <cstdlib>
#include <malloc.h>
#include <new>

namespace {

bool counting = false;
std::size_t kept = 0;
std::size_t peak = 0;

} // namespace

void* operator new(std::size_t size) {
    void* const block = std::malloc(size);
    if (!block)
        throw std::bad_alloc();
    if (counting) {
        kept += _msize(block);
        peak = std::max(peak, kept);
    }
    return block;
}

void operator delete(void* block) noexcept {
    if (counting && block)
        kept -= _msize(block);
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

AllocationCount::AllocationCount() noexcept {
    kept = peak = 0;
    counting = true;
}

AllocationCount::~AllocationCount() {
    counting = false;
}

std::size_t AllocationCount::Kept() const noexcept {
    return kept;
}

std::size_t AllocationCount::Peak() const noexcept {
    return peak;
}
