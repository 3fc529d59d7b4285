#pragma once

#include <memory>

#include <windows.h>

/// Closes a log file. Ignores failures: the log cannot log its own.
struct CloseFile {
    void operator()(HANDLE file) const noexcept { CloseHandle(file); }
};

/// Null: not open.
using FileHandle = std::unique_ptr<void, CloseFile>;

/// Owns the result of CreateFile.
inline FileHandle OwnedFile(HANDLE created) noexcept {
    return FileHandle(created == INVALID_HANDLE_VALUE ? nullptr : created);
}
