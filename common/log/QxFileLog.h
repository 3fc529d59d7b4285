#pragma once

#include "QxLog.h"
#include "../QxTHandle.h"

#include <cstdint>
#include <string_view>

/// Appends lines to a file as UTF-16LE with CRLF line ends and no byte-order mark, and renames the file to
/// ".bak" when it has reached a size. The sink's name is the file name.
///
/// The file is opened by the first write and stays open. Several processes may write to one file: each text
/// is appended whole, under a lock on the file. A link in the path is not followed. What cannot be opened,
/// locked, written or renamed is passed over in silence and tried again with a later text.
class QxFileLog final : public QxLog {
public:
    /// maxFileSize is in MiB; 0 never rotates.
    QxFileLog(const QxString& fileName, std::uint32_t maxFileSize) noexcept
        : QxLog(fileName), m_maxBytes(std::uint64_t{maxFileSize} * 1024 * 1024) {}

    /// Text behind the last line feed is not written.
    void Write(std::wstring_view text) noexcept override;

private:
    bool OpenAndLock();
    bool Open();
    bool LockFileEnd() noexcept;
    bool Append(std::wstring_view lines) noexcept;
    bool IsFull(HANDLE file) const noexcept;
    void Rotate();

    std::uint64_t m_maxBytes;
    QxKernelHandle m_file;
    /// Another process held the file for the whole time that a write may wait.
    bool m_refused = false;
};
