#pragma once

#include "XmlTree.h"

#include <string>
#include <string_view>
#include <vector>

/// Collects the findings of a file and prints them in the order of their places, like a compiler:
/// "job.xml:3:17: warning: ...".
class Findings {
public:
    Findings(std::wstring file, const XmlTree& tree) : m_file(std::move(file)), m_tree(tree) {}

    /// The library fails on it or misreads it.
    void Error(std::size_t offset, const std::wstring& message) { Add(offset, L": error: " + message); }
    /// The library reads it, but it is probably a mistake.
    void Warning(std::size_t offset, const std::wstring& message) { Add(offset, L": warning: " + message); }
    /// An error without a place in the file.
    void FileError(const std::wstring& message);

    std::size_t Count() const noexcept { return m_entries.size(); }
    void Show();

private:
    struct Entry {
        std::size_t offset;
        std::wstring line;
    };
    void Add(std::size_t offset, const std::wstring& message);

    std::wstring m_file;
    const XmlTree& m_tree;
    std::vector<Entry> m_entries;
};
