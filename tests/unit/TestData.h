#pragma once

#include <string>

/// Reads an ASCII file of tests/data.
std::wstring ReadTestData(const char* fileName);

/// Pseudo-random choices, identical on every platform and in every run.
class Choices {
public:
    explicit Choices(unsigned seed) noexcept : m_state(seed * 2654435761u + 1u) {}
    /// A number from 0 to count - 1.
    unsigned Below(unsigned count) noexcept {
        m_state = m_state * 1664525u + 1013904223u;
        return (m_state >> 8) % count;
    }

private:
    unsigned m_state;
};
