#pragma once

#include "common/text/TextEncoding.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <windows.h>

struct CloseKernelHandle {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseKernelHandle>;

/// On failure empty, with the reason in GetLastError.
Handle OpenToRead(const std::wstring& path);
bool IsFolder(const std::wstring& path);

/// A file or standard input, read once from its beginning. Throws ToolError.
class InputFile {
public:
    explicit InputFile(const std::wstring& path);
    /// Reads at most `room` bytes; returns 0 at the end.
    std::size_t Read(char* to, std::size_t room);
    /// 0 for standard input.
    std::uint64_t Size() const noexcept { return m_size; }

private:
    std::wstring m_path;
    Handle m_file;
    HANDLE m_source;
    std::uint64_t m_size = 0;
};

/// How a file is read.
struct FileEncoding {
    const wchar_t* name; ///< "UTF-8"
    std::string_view mark;
    bool hasMark; ///< the file begins with the mark
};
/// A byte-order mark selects the encoding. Without one it is UTF-8, or UTF-16 if the first character, which
/// is ASCII in XML, has a zero byte.
FileEncoding EncodingOf(std::string_view beginning);

/// A file's decoded text.
struct TextFile {
    std::wstring text;
    std::size_t bytes = 0;
    const wchar_t* encoding = L"";     ///< how the file was read: "UTF-8"
    bool isMarkMissing = false;        ///< UTF-16 without a byte-order mark
    TextEncoding::Malformed malformed; ///< what is not valid in the encoding
};

/// Throws ToolError if the file is unreadable or too long.
TextFile ReadTextFile(const std::wstring& path);

/// The name that reads standard input.
inline constexpr wchar_t StandardInput[] = L"-";
/// A file's name for messages.
std::wstring FileLabel(const std::wstring& path);
