#include "Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> requested{0};
/// Allocations left before one fails; negative: none fails.
std::atomic<int> untilFailure{-1};
std::atomic<bool> failed{false};

} // namespace

namespace Allocations {

std::size_t BytesRequested() noexcept {
    return requested;
}

FailOnce::FailOnce(unsigned allowed) noexcept {
    failed = false;
    untilFailure = static_cast<int>(allowed);
}

FailOnce::~FailOnce() {
    untilFailure = -1;
}

bool FailOnce::Happened() const noexcept {
    return failed;
}

} // namespace Allocations

void* operator new(std::size_t size) {
    requested += size;
    if (untilFailure >= 0 && untilFailure-- == 0) {
        failed = true;
        throw std::bad_alloc();
    }
    if (void* block = std::malloc(size != 0 ? size : 1))
        return block;
    throw std::bad_alloc();
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return operator new(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void operator delete(void* block) noexcept {
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
