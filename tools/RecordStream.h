#pragma once

#include "TextFile.h"

#include <cstddef>
#include <string>
#include <string_view>

/// One record in a file.
struct RecordText {
    std::wstring_view text; ///< valid until the next one is read
    std::wstring_view root; ///< the root element's name without prefix; empty for text outside of records
    std::size_t number;     ///< in its file, from 1
    std::size_t line;       ///< its first, from 1
    bool hasLostCharacters; ///< it has bytes that are not valid in the file's encoding
};

/// Splits a file into its records, one after the other, holding little more than one of them.
///
/// A record ends with the end tag of its root element. A record without one ends before the next record, so
/// damage to one record does not reach the others: no record contains its own root element, a job or a
/// printer. White space, comments and declarations between records are skipped.
class RecordStream {
public:
    /// Throws ToolError.
    explicit RecordStream(const std::wstring& path);
    /// Returns false at the end of the file. Throws ToolError.
    bool Next(RecordText& record);
    /// Of the file, in bytes.
    std::uint64_t Size() const noexcept { return m_file.Size(); }
    std::uint64_t BytesRead() const noexcept { return m_bytesRead; }
    const wchar_t* Encoding() const noexcept { return m_encoding; }

private:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    // Offsets count from the first character that is not consumed.
    bool ReadMore();
    void Decode();
    bool Has(std::size_t offset);
    std::wstring_view Ahead(std::size_t offset, std::size_t length);
    std::size_t Find(wchar_t sought, std::size_t from);
    void Consume(std::size_t length);
    std::size_t SkippedLength(std::size_t offset);
    std::size_t RecordLength();
    std::size_t OutsideLength();
    bool StartsElement(std::size_t offset);

    InputFile m_file;
    std::wstring m_path;
    const wchar_t* m_encoding = L"";
    std::string m_bytes; ///< the encoding's mark, and what is not decoded yet
    std::wstring m_text;
    std::size_t m_at = 0;     ///< consumed
    std::size_t m_length = 0; ///< of the current record
    std::wstring m_root;
    std::size_t m_number = 0, m_line = 1;
    std::uint64_t m_bytesRead = 0;
    bool m_hasLost = false, m_isAtEnd = false;
};
