#include "CheckReport.h"

#include "Console.h"
#include "Escaping.h"

#include <algorithm>

void CheckReport::Item(const std::wstring& label, const std::wstring& value) {
    constexpr std::size_t width = 18;
    if (m_format != Format::Text) {
        m_rows.Add({label, value, {}, {}});
        return;
    }
    std::wstring line = label;
    line.resize(std::max(width, line.size() + 1), L' ');
    Console::Line(line + value);
}

void CheckReport::Problem(const std::wstring& problem, const std::wstring& remedy) {
    ++m_problems;
    if (m_format != Format::Text) {
        m_rows.Add({{}, {}, problem, remedy});
        return;
    }
    Console::Line(L"  problem: " + problem);
    Console::Line(L"  remedy:  " + remedy);
}

void CheckReport::Summary() {
    if (m_format == Format::Text)
        Console::Line(m_problems == 0 ? L"No problem found." : Count(m_problems, L"problem") + L" found.");
}
