#include "AppendLock.h"

#include "FileLocks.h"

namespace {

/// How long a line waits for other writers.
constexpr DWORD MaxWait = 3000;
/// An append takes microseconds, a sleep milliseconds: the next writer retries this often before it sleeps.
constexpr int Eager = 50;

/// The first byte is the append lock. Every other byte is a place in the queue, ordered by time of arrival.
constexpr DWORD AppendByte = 0, FirstPlace = 1;

/// The place for an arrival now: the time in milliseconds.
DWORD PlaceNow() noexcept {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    const ULONGLONG ticks = static_cast<ULONGLONG>(now.dwHighDateTime) << 32 | now.dwLowDateTime;
    return FirstPlace + 1 + static_cast<DWORD>(ticks / 10000 % 0x7FFFFFFF);
}

} // namespace

/// Also true on a file system without locks: the line is still written.
bool AppendLock::Lock(Range& range, DWORD from, DWORD size) noexcept {
    if (!FileLocks::TryLock(m_file, FileLocks::Position(FileLocks::Appending, from), size,
                            LOCKFILE_EXCLUSIVE_LOCK))
        return !FileLocks::IsAnothers(GetLastError());
    range = {from, size};
    return true;
}

void AppendLock::Unlock(Range& range) noexcept {
    OVERLAPPED position = FileLocks::Position(FileLocks::Appending, range.from);
    if (range.size != 0 && !UnlockFileEx(m_file, 0, range.size, 0, &position))
        m_sticks = true;
    range = {};
}

bool AppendLock::HasTimeLeft() const noexcept {
    return GetTickCount() - m_start < m_wait;
}

bool AppendLock::WaitFor(Range& range, DWORD from, DWORD size, int eagerTries) noexcept {
    while (!Lock(range, from, size)) {
        if (!HasTimeLeft())
            return false;
        if (eagerTries-- > 0)
            SwitchToThread();
        else
            Sleep(1);
    }
    return true;
}

/// True if this writer is next.
bool AppendLock::WaitInQueue() noexcept {
    DWORD place = PlaceNow();
    while (!Lock(m_place, place, 1)) {
        if (!HasTimeLeft())
            return false;
        Sleep(1);
        place = PlaceNow();
    }
    return WaitFor(m_earlier, FirstPlace, place - FirstPlace);
}

bool AppendLock::Take(HANDLE file) noexcept {
    m_file = file;
    m_sticks = false;
    m_start = GetTickCount();
    m_wait = m_triesOnce ? 0 : MaxWait;
    if (Lock(m_held, AppendByte, PlaceNow() + 1)) { // no writer, and no earlier one waiting
        m_ignoresQueue = m_triesOnce = false;
        return true;
    }
    if (!m_ignoresQueue && !m_triesOnce)
        m_ignoresQueue = !WaitInQueue();
    m_triesOnce = !WaitFor(m_held, AppendByte, 1, Eager);
    // From here on the next in the queue waits for the first byte.
    Unlock(m_earlier);
    Unlock(m_place);
    if (m_triesOnce)
        SetLastError(ERROR_LOCK_VIOLATION);
    return !m_triesOnce;
}

bool AppendLock::Release() noexcept {
    Unlock(m_held);
    return !m_sticks;
}
