#pragma once

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

/// A file's text and size. The encoding is UTF-8 or, with a byte-order mark, UTF-16 of either byte order.
/// Throws ToolError if the file is unreadable or too long.
struct TextFile {
    std::wstring text;
    std::size_t bytes;
};
TextFile ReadTextFile(const std::wstring& path);
