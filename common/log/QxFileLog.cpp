#include "QxFileLog.h"

#include "PlainFile.h"
#include "RenameMark.h"

#include <string>
#include <utility>

static_assert(sizeof(wchar_t) == 2, "Text is written without conversion: UTF-16LE.");

namespace {

/// How long a write waits, in milliseconds, while another writer renames the file.
constexpr DWORD MaxWait = 3000;

/// The complete lines of the text, with CRLF.
std::wstring FileLines(std::wstring_view text) {
    std::wstring lines;
    lines.reserve(text.size() + 16);
    for (std::size_t end = text.find(L'\n'); end != std::wstring_view::npos; end = text.find(L'\n')) {
        lines.append(text.substr(0, end)).append(L"\r\n");
        text.remove_prefix(end + 1);
    }
    return lines;
}

} // namespace

void QxFileLog::Write(std::wstring_view text) noexcept {
    try {
        const std::wstring lines = FileLines(text);
        if (lines.empty())
            return;
        if (WriteLines(lines))
            m_reported = false;
        else
            Report(GetLastError());
    } catch (...) {
        // Out of memory: the text is lost.
    }
}

/// Sets the last error on failure.
bool QxFileLog::WriteLines(std::wstring_view lines) {
    if (!Open())
        return false;
    const bool written = m_lock.Take(m_file.get()) && Append(lines);
    const DWORD reason = GetLastError();
    const bool unlocked = m_lock.Release();
    // Outside the lock: flushing takes by far the longest.
    if (written)
        FlushFileBuffers(m_file.get());
    if (!unlocked)
        m_file.reset();
    else if (written && IsFull(m_file.get()))
        Rotate();
    SetLastError(reason);
    return written;
}

/// Sets the last error on failure.
bool QxFileLog::Open() {
    const DWORD start = GetTickCount();
    bool again = true; // a rename may end between the open and the check of the mark
    while (!m_file) {
        m_file = OpenPlainFile(Name(), FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
        if (m_file || GetLastError() != ERROR_SHARING_VIOLATION)
            break;
        const bool renamed = RenameMark::IsSetOn(Name());
        m_renamerHangs = renamed && (m_renamerHangs || GetTickCount() - start >= MaxWait);
        if (m_renamerHangs || (!renamed && !std::exchange(again, false))) {
            SetLastError(ERROR_SHARING_VIOLATION);
            return false;
        }
        if (renamed)
            Sleep(1);
    }
    if (m_file)
        m_renamerHangs = false;
    return m_file != nullptr;
}

/// Sets the last error on failure.
bool QxFileLog::Append(std::wstring_view lines) noexcept {
    LARGE_INTEGER end{};
    if (!SetFilePointerEx(m_file.get(), LARGE_INTEGER{}, &end, FILE_END))
        return false;
    const auto size = static_cast<DWORD>(lines.size() * sizeof(wchar_t));
    DWORD written = 0;
    const bool accepted = WriteFile(m_file.get(), lines.data(), size, &written, nullptr) != FALSE;
    if (accepted && written == size)
        return true;
    const DWORD reason = accepted ? ERROR_DISK_FULL : GetLastError();
    // Removes the partial line, which could end in half a character and corrupt all later lines.
    if (SetFilePointerEx(m_file.get(), end, nullptr, FILE_BEGIN))
        SetEndOfFile(m_file.get());
    SetLastError(reason);
    return false;
}

bool QxFileLog::IsFull(HANDLE file) const noexcept {
    LARGE_INTEGER size;
    return m_maxBytes > 0 && GetFileSizeEx(file, &size) &&
           static_cast<std::uint64_t>(size.QuadPart) >= m_maxBytes;
}

void QxFileLog::Rotate() {
    const std::wstring backup = std::wstring(Name()) + L".bak";
    const RenameMark mark(Name());
    if (mark.IsAnothers())
        return;
    m_file.reset();
    // Fails while another writer has the file open; the next write then reopens the same file. On success it
    // excludes other writers until the rename: otherwise another process could rename the full file first,
    // and this rename would overwrite that backup with the new file.
    const FileHandle alone = OpenPlainFile(Name(), FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (!alone || !IsFull(alone.get()))
        return;
    const DWORD attributes = GetFileAttributesW(backup.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesW(backup.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    MoveFileExW(Name().c_str(), backup.c_str(), MOVEFILE_REPLACE_EXISTING);
}

void QxFileLog::Report(DWORD reason) {
    if (m_reported)
        return;
    std::wstring text = L"JobObjects: cannot write the log file '";
    text.append(Name().view()).append(L"'. ").append(PlainFileProblem(reason));
    OutputDebugStringW(text.c_str());
    m_reported = true;
}
