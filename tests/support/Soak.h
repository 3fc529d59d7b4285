#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

// Shared by the long-running tests. Each has a small default count; run.sh sets larger ones.

/// The count in the environment variable, or the default.
int SoakCount(const char* variable, int everyDay);

/// Pseudo-random numbers that depend only on the seed, not on the compiler.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    std::uint32_t Next();
    /// 0 to limit - 1; 0 for a limit of 0.
    std::uint32_t Below(std::size_t limit) {
        return limit == 0 ? 0 : static_cast<std::uint32_t>(Next() % limit);
    }
    bool OneIn(std::uint32_t times) { return Below(times) == 0; }
    template<class Range>
    const auto& Of(const Range& range) {
        return range[Below(std::size(range))];
    }

private:
    std::uint64_t m_state;
};
