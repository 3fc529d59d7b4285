#pragma once

#include <cstddef>

/// What the tests see of, and do to, the allocations of the C++ runtime in this executable.
namespace Allocations {

/// Bytes asked for since the program started.
std::size_t BytesRequested() noexcept;

/// While it lives, the allocation after the first `allowed` ones throws std::bad_alloc, once.
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
