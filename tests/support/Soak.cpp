#include "tests/support/Soak.h"

#include <cstdlib>

int SoakCount(const char* variable, int everyDay) {
    const char* text = std::getenv(variable);
    return text ? static_cast<int>(std::strtol(text, nullptr, 10)) : everyDay;
}

std::uint32_t Random::Next() {
    // SplitMix64: an addition and a mix of the bits.
    m_state += 0x9E3779B97F4A7C15u;
    std::uint64_t mixed = m_state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
    return static_cast<std::uint32_t>((mixed ^ (mixed >> 31)) >> 16);
}
