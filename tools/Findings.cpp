#include "Findings.h"

#include "Console.h"

#include <algorithm>

void Findings::FileError(const std::wstring& message) {
    m_entries.push_back({0, m_file + L": error: " + message});
}

void Findings::Add(std::size_t offset, const std::wstring& message) {
    const XmlTree::Place place = m_tree.PlaceOf(offset);
    m_entries.push_back({offset, m_file + L":" + std::to_wstring(place.line) + L":" +
                                     std::to_wstring(place.column) + message});
}

void Findings::Show() {
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const Entry& a, const Entry& b) { return a.offset < b.offset; });
    for (const Entry& entry : m_entries)
        Console::Line(entry.line);
}
