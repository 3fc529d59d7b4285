#pragma once

#include "FileHandle.h"

#include <string_view>

#include <windows.h>

/// Marks a log file while a writer renames it. Nobody else can open the file to write meanwhile, as with a
/// file that another program keeps to itself; the mark tells writers that it is worth waiting.
///
/// The mark is a lock on a byte of the file, through a handle that keeps nobody from the file. A writer that
/// may not read the file renames it without a mark.
class RenameMark {
public:
    /// Sets the mark, if possible, until the destruction. Throws std::bad_alloc.
    explicit RenameMark(std::wstring_view path);
    /// Another writer has set the mark.
    bool IsAnothers() const noexcept { return m_isAnothers; }

    /// Whether a writer renames the file, or just has. Throws std::bad_alloc.
    static bool IsSetOn(std::wstring_view path);

private:
    FileHandle m_file;
    bool m_isAnothers;
};
