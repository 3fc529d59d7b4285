#pragma once

#include "Rows.h"
#include "TextFile.h"
#include "XmlTree.h"

#include <cstdint>
#include <string>
#include <vector>

/// Prints what a command finds in files, in the order of the places, like a compiler:
/// "job.xml:3:17: warning: ...".
class FindingsOutput {
public:
    explicit FindingsOutput(Format format)
        : m_format(format), m_rows(format, {L"file", L"line", L"column", L"severity", L"message"}) {}

    /// Line 0 is a finding without a place.
    void Add(const std::wstring& file, XmlTree::Place place, const std::wstring& severity,
             const std::wstring& message);
    /// The last row of a file.
    void Result(const std::wstring& file, const std::wstring& message);

private:
    Format m_format;
    Rows m_rows;
};

/// Collects the findings of one file.
class Findings {
public:
    Findings(const std::wstring& path, const XmlTree& tree) : m_file(FileLabel(path)), m_tree(tree) {}

    /// The library refuses it, fails on it or misreads it.
    void Error(std::size_t offset, const std::wstring& message) { Add({offset, L"error", message, true}); }
    /// The library reads it, but it is probably a mistake.
    void Warning(std::size_t offset, const std::wstring& message) {
        Add({offset, L"warning", message, true});
    }
    /// No problem.
    void Note(std::size_t offset, const std::wstring& message) { Add({offset, L"note", message, true}); }
    // The same without a place in the file.
    void FileError(const std::wstring& message) { Add({0, L"error", message, false}); }
    void FileWarning(const std::wstring& message) { Add({0, L"warning", message, false}); }
    void FileNote(const std::wstring& message) { Add({LastOffset, L"note", message, false}); }

    /// Text that is not valid in the file's encoding.
    void Encoding(const TextFile& file);
    /// The tree's parse error.
    void ParseError(const TextFile& file);

    /// Errors and warnings.
    std::size_t Problems() const noexcept { return m_problems; }
    const std::wstring& File() const noexcept { return m_file; }
    void Show(FindingsOutput& output);

private:
    static constexpr std::size_t LastOffset = static_cast<std::size_t>(-1);
    struct Entry {
        std::size_t offset; ///< the order of the output
        const wchar_t* severity;
        std::wstring message;
        bool hasPlace;
    };
    void Add(Entry entry);

    std::wstring m_file;
    const XmlTree& m_tree;
    std::vector<Entry> m_entries;
    std::size_t m_problems = 0, m_dropped = 0;
};
