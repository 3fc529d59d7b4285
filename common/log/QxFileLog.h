#pragma once

#include "AppendLock.h"
#include "QxLog.h"
#include "FileHandle.h"

#include <cstdint>
#include <string_view>

/// Appends lines to a file as UTF-16LE with CRLF and no byte-order mark, and renames a full file to ".bak".
/// The sink's name is the file name.
///
/// The first write opens the file, which stays open. Several processes may share a file: each text is
/// appended whole, under the append lock. A text that cannot be written is lost; the first such failure in a
/// row is reported to the debugger.
class QxFileLog final : public QxLog {
public:
    /// maxFileSize is in MiB; 0: never rotate.
    QxFileLog(const QxString& fileName, std::uint32_t maxFileSize) noexcept
        : QxLog(fileName), m_maxBytes(std::uint64_t{maxFileSize} * 1024 * 1024) {}

    /// Drops text after the last line feed.
    void Write(std::wstring_view text) noexcept override;

private:
    bool WriteLines(std::wstring_view lines);
    bool Open();
    bool Append(std::wstring_view lines) noexcept;
    bool IsFull(HANDLE file) const noexcept;
    void Rotate();
    void Report(DWORD reason);

    std::uint64_t m_maxBytes;
    FileHandle m_file;
    AppendLock m_lock;
    bool m_renamerHangs = false; ///< another writer's rename has outlasted one wait
    bool m_reported = false;     ///< the current failure has been reported
};
