#pragma once

#include <cstddef>
#include <string>

/// A file's text and size. A byte-order mark decides between UTF-8 and UTF-16 of either order; without one it
/// is UTF-8. Throws ToolError when the file cannot be read or is too long for one text.
struct TextFile {
    std::wstring text;
    std::size_t bytes;
};
TextFile ReadTextFile(const std::wstring& path);

/// The system's words for an error code or HRESULT, with its number: "Access denied. (0x80070005)".
std::wstring ErrorText(long result);
/// "(0x80070005)" alone, for who has words of his own.
std::wstring ErrorNumber(long result);
