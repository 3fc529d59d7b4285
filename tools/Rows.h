#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <variant>
#include <vector>

enum class Format { Text, Json, Csv };

/// A cell of a row; monostate is a value that does not exist.
using Cell = std::variant<std::monostate, std::wstring, std::int64_t>;

/// Output for scripts: CSV with a header, or one JSON object per line.
class Rows {
public:
    Rows(Format format, std::initializer_list<const wchar_t*> columns)
        : m_format(format), m_columns(columns.begin(), columns.end()) {}

    /// One cell per column.
    void Add(std::initializer_list<Cell> cells);

private:
    void AddLine(std::initializer_list<Cell> cells, bool isJson);

    Format m_format;
    std::vector<std::wstring> m_columns;
    bool m_begun = false;
};
