#pragma once

#include "Rows.h"
#include "TableRows.h"
#include "TextFile.h"

#include <cstdint>
#include <span>
#include <string>

/// Writes a table as CSV (RFC 4180, with a header) or as one JSON object per line, in UTF-8. CSV quotes an
/// empty text, so that it differs from a cell without a value. Throws ToolError, for a full disk too.
class TableWriter {
public:
    struct Form {
        const char* name; ///< the member "table" of each JSON object; null for none
        std::span<const char* const> columns;
        Format format;
    };

    /// To standard output.
    explicit TableWriter(const Form& form);
    /// To a new file, or behind the first `keptBytes` bytes of an existing one.
    TableWriter(const Form& form, const std::wstring& path, std::uint64_t keptBytes);

    void Add(const TableRow& row);
    /// Returns the size of the file.
    std::uint64_t Flush();
    /// The same, and on return the rows are on the disk.
    std::uint64_t Commit();

private:
    void AddHeader();
    void AddCsv(const TableRow& row);
    void AddJson(const TableRow& row);

    Form m_form;
    std::wstring m_path;
    Handle m_file;
    HANDLE m_target;
    std::uint64_t m_size = 0; ///< written
    std::string m_pending;
};
