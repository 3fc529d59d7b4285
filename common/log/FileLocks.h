#pragma once

#include <windows.h>

/// The bytes of a log file that writers lock: beyond any real offset, so readers never block.
namespace FileLocks {

/// High halves of the offsets.
constexpr DWORD Appending = 0x7FFFFFFF, Renaming = 0x7FFFFFFE;

inline OVERLAPPED Position(DWORD high, DWORD low) noexcept {
    OVERLAPPED position{};
    position.Offset = low;
    position.OffsetHigh = high;
    return position;
}

inline bool TryLock(HANDLE file, OVERLAPPED position, DWORD size, DWORD kind) noexcept {
    return LockFileEx(file, kind | LOCKFILE_FAIL_IMMEDIATELY, 0, size, 0, &position) != FALSE;
}

/// Whether a lock failed because another writer holds it; some file systems do not support locks.
inline bool IsAnothers(DWORD reason) noexcept {
    return reason == ERROR_LOCK_VIOLATION || reason == ERROR_IO_PENDING;
}

} // namespace FileLocks
