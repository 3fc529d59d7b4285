#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A cell of a table: nothing, a number, or UTF-8 text.
class TableCell {
public:
    enum class Kind : std::uint8_t { None, Number, Text };

    void Clear() noexcept { Set(Kind::None); }
    /// The text is the caller's to append to; its memory is used again.
    std::string& SetText() noexcept {
        Set(Kind::Text);
        return m_text;
    }
    void SetText(std::string_view text) { SetText() = text; }
    void SetNumber(std::int64_t number) {
        Set(Kind::Number);
        char digits[24];
        m_text.assign(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
        m_number = number;
    }

    Kind GetKind() const noexcept { return m_kind; }
    /// The number's digits, or the text.
    const std::string& Text() const noexcept { return m_text; }
    /// 0 for other kinds.
    std::int64_t Number() const noexcept { return m_number; }

private:
    void Set(Kind kind) noexcept {
        m_kind = kind;
        m_number = 0;
        m_text.clear();
    }

    Kind m_kind = Kind::None;
    std::int64_t m_number = 0;
    std::string m_text;
};

using TableRow = std::vector<TableCell>;

/// Rows of one table, which keep their memory for the next ones.
class TableRows {
public:
    explicit TableRows(std::size_t columns) : m_columns(columns) {}

    void Clear() noexcept { m_count = 0; }
    /// A row of empty cells.
    TableRow& Add() {
        if (m_count == m_rows.size())
            m_rows.emplace_back(m_columns);
        TableRow& row = m_rows[m_count++];
        for (TableCell& cell : row)
            cell.Clear();
        return row;
    }
    TableRow* begin() noexcept { return m_rows.data(); }
    TableRow* end() noexcept { return m_rows.data() + m_count; }
    const TableRow* begin() const noexcept { return m_rows.data(); }
    const TableRow* end() const noexcept { return m_rows.data() + m_count; }

private:
    std::size_t m_columns, m_count = 0;
    std::vector<TableRow> m_rows;
};
