#include "Rows.h"

#include "Console.h"
#include "Escaping.h"

namespace {

std::wstring CellText(const Cell& cell, bool isJson) {
    if (const auto* text = std::get_if<std::wstring>(&cell))
        return isJson ? Escaping::Json(*text) : Escaping::Csv(*text);
    if (const auto* number = std::get_if<std::int64_t>(&cell))
        return std::to_wstring(*number);
    return isJson ? L"null" : L"";
}

} // namespace

void Rows::Add(std::initializer_list<Cell> cells) {
    const bool isJson = m_format == Format::Json;
    if (!isJson && !m_begun) {
        std::wstring header;
        for (const std::wstring& column : m_columns)
            header += (header.empty() ? L"" : L",") + column;
        Console::Line(header);
    }
    m_begun = true;
    AddLine(cells, isJson);
}

void Rows::AddLine(std::initializer_list<Cell> cells, bool isJson) {
    std::wstring line;
    const std::wstring* column = m_columns.data();
    for (const Cell& cell : cells) {
        line += column == m_columns.data() ? L"" : L",";
        if (isJson)
            line += Escaping::Json(*column) + L":";
        line += CellText(cell, isJson);
        ++column;
    }
    Console::Line(isJson ? L"{" + line + L"}" : line);
}
