#pragma once

#include <cstddef>

/// Counts this executable's C++ allocations and injects allocation failures.
namespace Allocations {

/// Bytes requested since the program started.
std::size_t BytesRequested() noexcept;

/// During its lifetime, the allocation after the first `allowed` ones throws std::bad_alloc, once.
class FailOnce {
public:
    explicit FailOnce(unsigned allowed) noexcept;
    ~FailOnce();
    FailOnce(const FailOnce&) = delete;
    FailOnce& operator=(const FailOnce&) = delete;
    /// Whether an allocation has failed.
    bool Happened() const noexcept;
};

} // namespace Allocations
