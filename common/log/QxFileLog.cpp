#include "QxFileLog.h"

#include "LinkFreeFile.h"

#include <string>

static_assert(sizeof(wchar_t) == 2, "Text is written as it lies in memory: UTF-16LE.");

namespace {

/// How long a write waits for other writers. A process that was stopped while it held the file must not stop
/// this one.
constexpr DWORD maxWait = 3000;

/// Whether an attempt failed because another process appends to the file or renames it, which passes.
bool IsHeldByAnother(DWORD reason) noexcept {
    return reason == ERROR_LOCK_VIOLATION || reason == ERROR_IO_PENDING || reason == ERROR_SHARING_VIOLATION;
}

/// The byte that stands for the right to append. It lies far behind every real offset, so that readers of
/// the file are never shut out.
OVERLAPPED LockPosition() noexcept {
    OVERLAPPED position{};
    position.OffsetHigh = 0x7FFFFFFF;
    return position;
}

bool UnlockFileEnd(HANDLE file) noexcept {
    OVERLAPPED position = LockPosition();
    return UnlockFileEx(file, 0, 1, 0, &position) != FALSE;
}

/// The text's complete lines with CRLF line ends.
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
        if (lines.empty() || !OpenAndLock())
            return;
        const bool written = Append(lines);
        const bool unlocked = UnlockFileEnd(m_file.Get());
        // Outside the lock: flushing takes by far the longest, and other writers need not wait for it.
        if (written)
            FlushFileBuffers(m_file.Get());
        // Closing gives back a lock that could not be taken off. Otherwise nobody could write any more.
        if (!unlocked)
            m_file.Close();
        else if (written && IsFull(m_file.Get()))
            Rotate();
    } catch (...) {
        // Out of memory: the text is lost.
    }
}

bool QxFileLog::OpenAndLock() {
    // After one vain wait a single attempt has to do, until the file is free again: a stopped process costs
    // the host one wait and not one for each line.
    const DWORD wait = m_refused ? 0 : maxWait;
    const DWORD start = GetTickCount();
    while (!Open() || !LockFileEnd()) {
        if (!IsHeldByAnother(GetLastError()))
            return false;
        if (GetTickCount() - start >= wait) {
            m_refused = true;
            return false;
        }
        Sleep(1);
    }
    m_refused = false;
    return true;
}

/// On failure the reason is the last error.
bool QxFileLog::Open() {
    if (!m_file.IsOpen())
        m_file = OpenFileWithoutLinks(Name(), FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_ALWAYS);
    return m_file.IsOpen();
}

/// One attempt. On failure the reason is the last error.
bool QxFileLog::LockFileEnd() noexcept {
    OVERLAPPED position = LockPosition();
    // A file system that knows no locks still takes the line.
    return LockFileEx(m_file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                      &position) ||
           !IsHeldByAnother(GetLastError());
}

bool QxFileLog::Append(std::wstring_view lines) noexcept {
    LARGE_INTEGER end{};
    if (!SetFilePointerEx(m_file.Get(), LARGE_INTEGER{}, &end, FILE_END))
        return false;
    const auto size = static_cast<DWORD>(lines.size() * sizeof(wchar_t));
    DWORD written = 0;
    if (WriteFile(m_file.Get(), lines.data(), size, &written, nullptr) && written == size)
        return true;
    // A piece of a line, perhaps half a character, would spoil what follows it.
    if (SetFilePointerEx(m_file.Get(), end, nullptr, FILE_BEGIN))
        SetEndOfFile(m_file.Get());
    return false;
}

bool QxFileLog::IsFull(HANDLE file) const noexcept {
    LARGE_INTEGER size;
    return m_maxBytes > 0 && GetFileSizeEx(file, &size) &&
           static_cast<std::uint64_t>(size.QuadPart) >= m_maxBytes;
}

void QxFileLog::Rotate() {
    const std::wstring backup = std::wstring(Name()) + L".bak";
    m_file.Close();
    // Refused while another writer has the file open; the next write then opens the same file again. Once
    // granted it keeps other writers away until the file is renamed. Without it another process could rename
    // the full file first, and the one that was begun after it would replace it as the backup.
    const QxKernelHandle alone =
        OpenFileWithoutLinks(Name(), FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING);
    if (!alone.IsOpen() || !IsFull(alone.Get()))
        return;
    const DWORD attributes = GetFileAttributesW(backup.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesW(backup.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    MoveFileExW(Name().c_str(), backup.c_str(), MOVEFILE_REPLACE_EXISTING);
}
