#pragma once

#include <cstdint>

// What the long-running tests share. Each has a small count of its own for every day, and reads a larger one
// from an environment variable; see run.sh.

/// The count in the environment variable, or else this one.
int SoakCount(const char* variable, int everyDay);

/// Numbers that depend on the seed alone, on every compiler.
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
