#pragma once

#include <cstddef>

/// Counts the allocations of this program's own C++ code during its lifetime. One instance at a time.
class AllocationCount {
public:
    AllocationCount() noexcept;
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    /// Bytes allocated and not yet freed.
    std::size_t Kept() const noexcept;
    /// Maximum of Kept() so far.
    std::size_t Peak() const noexcept;
};
