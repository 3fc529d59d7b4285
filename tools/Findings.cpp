#include "Findings.h"

#include "Console.h"
#include "Escaping.h"

#include <algorithm>

namespace {

/// A large file with one mistake in each line would fill the memory.
constexpr std::size_t MostEntries = 1000;

} // namespace

void FindingsOutput::Add(const std::wstring& file, XmlTree::Place place, const std::wstring& severity,
                         const std::wstring& message) {
    const bool hasPlace = place.line > 0;
    if (m_format != Format::Text) {
        const auto number = [&](std::size_t value) {
            return hasPlace ? Cell(static_cast<std::int64_t>(value)) : Cell();
        };
        m_rows.Add({file, number(place.line), number(place.column), severity, message});
        return;
    }
    std::wstring line = file;
    if (hasPlace)
        line += L":" + std::to_wstring(place.line) + L":" + std::to_wstring(place.column);
    line += L": " + severity + L": " + message;
    Console::Line(line);
}

void FindingsOutput::Result(const std::wstring& file, const std::wstring& message) {
    if (m_format == Format::Text)
        Console::Line(file + L": " + message);
    else
        Add(file, {0, 0}, L"result", message);
}

void Findings::Encoding(const TextFile& file) {
    if (file.isMarkMissing)
        FileWarning(std::wstring(L"this is ") + file.encoding +
                    L", without a byte-order mark: other programs may take it for UTF-8");
    if (file.malformed.count > 0)
        Error(file.malformed.first, std::wstring(L"not valid ") + file.encoding + L": " +
                                        Count(file.malformed.count, L"character") +
                                        (file.malformed.count == 1 ? L" is" : L" are") +
                                        L" lost; save the file as UTF-8");
}

void Findings::ParseError(const TextFile& file) {
    Error(m_tree.ErrorOffset(), m_tree.Error() + L" (the file is read as " + file.encoding + L")");
}

void Findings::Add(Entry entry) {
    if (entry.severity != std::wstring_view(L"note"))
        ++m_problems;
    if (m_entries.size() < MostEntries)
        m_entries.push_back(std::move(entry));
    else
        ++m_dropped;
}

void Findings::Show(FindingsOutput& output) {
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const Entry& a, const Entry& b) { return a.offset < b.offset; });
    for (const Entry& entry : m_entries)
        output.Add(m_file, entry.hasPlace ? m_tree.PlaceOf(entry.offset) : XmlTree::Place{0, 0},
                   entry.severity, entry.message);
    if (m_dropped > 0)
        output.Add(m_file, {0, 0}, L"note", Count(m_dropped, L"more finding") + L" not shown");
}
