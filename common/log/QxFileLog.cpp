#include "QxFileLog.h"

#include <string>

static_assert(sizeof(wchar_t) == 2, "Text is written as it lies in memory: UTF-16LE.");

namespace {

/// How long a write waits for other writers. A process that was stopped while it held the lock must not stop
/// this one.
constexpr DWORD maxLockWait = 3000;

/// The byte that stands for the right to append. It lies far behind every real offset, so that readers of
/// the file are never shut out.
OVERLAPPED LockPosition() noexcept {
    OVERLAPPED position{};
    position.OffsetHigh = 0x7FFFFFFF;
    return position;
}

void UnlockFileEnd(HANDLE file) noexcept {
    OVERLAPPED position = LockPosition();
    UnlockFileEx(file, 0, 1, 0, &position);
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
        if (lines.empty() || !Open() || !LockFileEnd())
            return;
        const bool written = Append(lines);
        UnlockFileEnd(m_file.Get());
        if (!written)
            return;
        // Outside the lock: flushing takes by far the longest, and other writers need not wait for it.
        FlushFileBuffers(m_file.Get());
        if (IsFull())
            Rotate();
    } catch (...) {
        // Out of memory: the text is lost.
    }
}

bool QxFileLog::Open() noexcept {
    if (!m_file.IsOpen())
        m_file = QxKernelHandle(CreateFileW(Name().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    return m_file.IsOpen();
}

bool QxFileLog::LockFileEnd() noexcept {
    // After one vain wait a single attempt has to do, until the lock is free again: a stopped process costs
    // the host one wait and not one for each line.
    const DWORD wait = m_lockRefused ? 0 : maxLockWait;
    const DWORD start = GetTickCount();
    for (;;) {
        OVERLAPPED position = LockPosition();
        if (LockFileEx(m_file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                       &position)) {
            m_lockRefused = false;
            return true;
        }
        // A file system that knows no locks still takes the line.
        const DWORD reason = GetLastError();
        if (reason != ERROR_LOCK_VIOLATION && reason != ERROR_IO_PENDING)
            return true;
        if (GetTickCount() - start >= wait)
            break;
        Sleep(1);
    }
    m_lockRefused = true;
    return false;
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

bool QxFileLog::IsFull() const noexcept {
    LARGE_INTEGER size;
    return m_maxBytes > 0 && GetFileSizeEx(m_file.Get(), &size) &&
           static_cast<std::uint64_t>(size.QuadPart) >= m_maxBytes;
}

void QxFileLog::Rotate() {
    const std::wstring backup = std::wstring(Name()) + L".bak";
    m_file.Close();
    const DWORD attributes = GetFileAttributesW(backup.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_READONLY)
        SetFileAttributesW(backup.c_str(), attributes & ~static_cast<DWORD>(FILE_ATTRIBUTE_READONLY));
    // Refused while another process has the file open; the next write then opens the same file again.
    MoveFileExW(Name().c_str(), backup.c_str(), MOVEFILE_REPLACE_EXISTING);
}
