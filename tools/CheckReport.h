#pragma once

#include "Rows.h"

#include <cstddef>
#include <string>

/// What "check" prints: what it found, and problems with a remedy each.
class CheckReport {
public:
    explicit CheckReport(Format format)
        : m_format(format), m_rows(format, {L"item", L"value", L"problem", L"remedy"}) {}

    void Item(const std::wstring& label, const std::wstring& value);
    void Problem(const std::wstring& problem, const std::wstring& remedy);
    /// The last line.
    void Summary();
    std::size_t Problems() const noexcept { return m_problems; }

private:
    Format m_format;
    Rows m_rows;
    std::size_t m_problems = 0;
};
