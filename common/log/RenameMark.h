#pragma once

#include "FileHandle.h"

#include <string_view>

#include <windows.h>

/// Marks a log file during a rename. Other writers cannot open the file then; the mark distinguishes this
/// short sharing violation, worth waiting for, from a file that another program keeps open exclusively.
///
/// The mark is a byte lock through a handle that shares everything. A writer without read access renames
/// without a mark.
class RenameMark {
public:
    /// Sets the mark, if possible; the destructor removes it. Throws std::bad_alloc.
    explicit RenameMark(std::wstring_view path);
    /// Whether another writer has set the mark.
    bool IsAnothers() const noexcept { return m_isAnothers; }

    /// Whether a writer is renaming the file or has just done so. Throws std::bad_alloc.
    static bool IsSetOn(std::wstring_view path);

private:
    FileHandle m_file;
    bool m_isAnothers;
};
