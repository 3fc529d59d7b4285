#pragma once

#include <cstdint>

/// The sum of two counts as 32-bit arithmetic gives it, also beyond the range.
constexpr std::int32_t WrappingSum(std::int32_t a, std::int32_t b) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
