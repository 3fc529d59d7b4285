#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include <windows.h>

struct CloseKernelHandle {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseKernelHandle>;

/// Empty on a failure, with the reason as the last error.
Handle OpenToRead(const std::wstring& path);

/// A file's text and size. A byte-order mark decides between UTF-8 and UTF-16 of either order; without one it
/// is UTF-8. Throws ToolError when the file cannot be read or is too long for one text.
struct TextFile {
    std::wstring text;
    std::size_t bytes;
};
TextFile ReadTextFile(const std::wstring& path);
