#pragma once

#include <cstdint>

/// Sum with 32-bit wrap-around instead of undefined behaviour.
constexpr std::int32_t WrappingSum(std::int32_t a, std::int32_t b) noexcept {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
