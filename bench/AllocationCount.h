#pragma once

#include <cstddef>

/// Counts what this program's own C++ code allocates while one of these lives. One at a time.
class AllocationCount {
public:
    AllocationCount() noexcept;
    ~AllocationCount();
    AllocationCount(const AllocationCount&) = delete;
    AllocationCount& operator=(const AllocationCount&) = delete;

    /// Bytes allocated and not freed since.
    std::size_t Kept() const noexcept;
    /// The most that was kept at any moment.
    std::size_t Peak() const noexcept;
};
