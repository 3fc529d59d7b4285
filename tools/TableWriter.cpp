#include "TableWriter.h"

#include "Console.h"
#include "SystemError.h"

#include <windows.h>

namespace {

constexpr std::size_t BufferSize = std::size_t{256} * 1024;

[[noreturn]] void Fail(const std::wstring& path) {
    throw ToolError(path + L": " + ErrorText(HRESULT_FROM_WIN32(GetLastError())));
}

/// Databases do not store a NUL.
void AppendCsv(std::string& line, const std::string& text) {
    if (!text.empty() && text.find_first_of(std::string_view("\",\r\n\0", 5)) == std::string::npos) {
        line += text;
        return;
    }
    line += '"';
    for (const char c : text) {
        if (c == '"')
            line += '"';
        if (c == '\0')
            line += "\xEF\xBF\xBD";
        else
            line += c;
    }
    line += '"';
}

void AppendJson(std::string& line, std::string_view text) {
    line += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20) {
            line += "\\u00";
            line += "0123456789ABCDEF"[byte >> 4];
            line += "0123456789ABCDEF"[byte & 0xF];
            continue;
        }
        if (c == '"' || c == '\\')
            line += '\\';
        line += c;
    }
    line += '"';
}

} // namespace

TableWriter::TableWriter(const Form& form)
    : m_form(form), m_path(L"standard output"), m_target(GetStdHandle(STD_OUTPUT_HANDLE)) {
    AddHeader();
}

TableWriter::TableWriter(const Form& form, const std::wstring& path, std::uint64_t keptBytes)
    : m_form(form), m_path(path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                              keptBytes > 0 ? OPEN_EXISTING : CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        Fail(path);
    m_file.reset(file);
    m_target = file;
    LARGE_INTEGER size, kept;
    kept.QuadPart = static_cast<LONGLONG>(keptBytes);
    if (!GetFileSizeEx(file, &size) || !SetFilePointerEx(file, kept, nullptr, FILE_BEGIN))
        Fail(path);
    if (size.QuadPart < kept.QuadPart)
        throw ToolError(path + L": the file is shorter than when the export was interrupted",
                        L"Export again into another folder.");
    if (!SetEndOfFile(file))
        Fail(path);
    m_size = keptBytes;
    if (keptBytes == 0)
        AddHeader();
}

void TableWriter::AddHeader() {
    if (m_form.format != Format::Csv)
        return;
    for (const char* const column : m_form.columns)
        (m_pending += m_pending.empty() ? "" : ",") += column;
    m_pending += "\r\n";
}

void TableWriter::Add(const TableRow& row) {
    if (m_form.format == Format::Csv)
        AddCsv(row);
    else
        AddJson(row);
    if (m_pending.size() >= BufferSize)
        Flush();
}

void TableWriter::AddCsv(const TableRow& row) {
    bool isFirst = true;
    for (const TableCell& cell : row) {
        if (!isFirst)
            m_pending += ',';
        isFirst = false;
        if (cell.GetKind() == TableCell::Kind::Text)
            AppendCsv(m_pending, cell.Text());
        else
            m_pending += cell.Text();
    }
    m_pending += "\r\n";
}

void TableWriter::AddJson(const TableRow& row) {
    char separator = '{';
    const auto addName = [&](const char* name) {
        ((m_pending += separator) += '"') += name;
        m_pending += "\":";
        separator = ',';
    };
    if (m_form.name) {
        addName("table");
        AppendJson(m_pending, m_form.name);
    }
    for (std::size_t column = 0; column < row.size(); ++column) {
        addName(m_form.columns[column]);
        const TableCell& cell = row[column];
        if (cell.GetKind() == TableCell::Kind::Text)
            AppendJson(m_pending, cell.Text());
        else
            m_pending += cell.GetKind() == TableCell::Kind::Number ? cell.Text() : "null";
    }
    m_pending += "}\r\n";
}

std::uint64_t TableWriter::Flush() {
    std::string_view rest = m_pending;
    while (!rest.empty()) {
        DWORD written = 0;
        if (!WriteFile(m_target, rest.data(), static_cast<DWORD>(rest.size()), &written, nullptr))
            Fail(m_path);
        if (written == 0) {
            SetLastError(ERROR_DISK_FULL);
            Fail(m_path);
        }
        rest.remove_prefix(written);
        m_size += written;
    }
    m_pending.clear();
    return m_size;
}

std::uint64_t TableWriter::Commit() {
    Flush();
    if (m_file && !FlushFileBuffers(m_target))
        Fail(m_path);
    return m_size;
}
