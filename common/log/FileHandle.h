#pragma once

#include <memory>

#include <windows.h>

/// Closes a file of the log. A failure is not reported: the log cannot log about itself.
struct CloseFile {
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};

/// Null if the file is not open.
using FileHandle = std::unique_ptr<void, CloseFile>;

/// Takes over what CreateFile returned.
inline FileHandle OwnedFile(HANDLE created) noexcept {
    return FileHandle(created == INVALID_HANDLE_VALUE ? nullptr : created);
}
