#pragma once

#include "common/text/TextEncoding.h"

#include <cstddef>
#include <memory>
#include <string>

#include <windows.h>

struct CloseKernelHandle {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseKernelHandle>;

/// On failure empty, with the reason in GetLastError.
Handle OpenToRead(const std::wstring& path);
bool IsFolder(const std::wstring& path);

/// A file's decoded text.
struct TextFile {
    std::wstring text;
    std::size_t bytes = 0;
    const wchar_t* encoding = L"";     ///< how the file was read: "UTF-8"
    bool isMarkMissing = false;        ///< UTF-16 without a byte-order mark
    TextEncoding::Malformed malformed; ///< what is not valid in the encoding
};

/// A byte-order mark selects the encoding. Without one it is UTF-8, or UTF-16 if the first character, which
/// is ASCII in XML, has a zero byte. Throws ToolError if the file is unreadable or too long.
TextFile ReadTextFile(const std::wstring& path);

/// The name that reads standard input.
inline constexpr wchar_t StandardInput[] = L"-";
/// A file's name for messages.
std::wstring FileLabel(const std::wstring& path);
