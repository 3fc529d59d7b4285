#pragma once

#include "AppendLock.h"
#include "QxLog.h"
#include "FileHandle.h"

#include <cstdint>
#include <string_view>

/// Appends lines to a file as UTF-16LE with CRLF line ends and no byte-order mark, and renames the file to
/// ".bak" when it has reached a size. The sink's name is the file name.
///
/// The file is opened by the first write and stays open. Several processes may write to one file: each text
/// is appended whole, under a lock on the file. A text that cannot be written is lost, and the next one tries
/// again; the debugger's output names the reason once.
class QxFileLog final : public QxLog {
public:
    /// maxFileSize is in MiB; 0 never rotates.
    QxFileLog(const QxString& fileName, std::uint32_t maxFileSize) noexcept
        : QxLog(fileName), m_maxBytes(std::uint64_t{maxFileSize} * 1024 * 1024) {}

    /// Text behind the last line feed is not written.
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
    bool m_renamerHangs = false; ///< a writer has been renaming the file for longer than a write waits
    bool m_reported = false;     ///< that the file cannot be written
};
