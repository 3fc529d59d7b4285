#pragma once

#include <windows.h>

/// Append lock for a file shared by several processes. It locks bytes beyond any real offset, so readers
/// never block.
///
/// Fair: writers get it in order of arrival. The system's own queue of blocked locks has no timeout, and a
/// writer may hang while it holds the lock.
class AppendLock {
public:
    /// Waits a few seconds at most. After one timeout, tries once per call until the file is free again: a
    /// hung writer costs one delay. Sets the last error on failure.
    bool Take(HANDLE file) noexcept;
    /// Call after each Take. False if a lock could not be released; the caller must then close the file.
    bool Release() noexcept;

private:
    struct Range {
        DWORD from = 0;
        DWORD size = 0; ///< 0: not locked
    };

    bool Lock(Range& range, DWORD from, DWORD size) noexcept;
    void Unlock(Range& range) noexcept;
    bool WaitFor(Range& range, DWORD from, DWORD size, int eagerTries = 0) noexcept;
    bool WaitInQueue() noexcept;
    bool HasTimeLeft() const noexcept;

    HANDLE m_file = nullptr;
    Range m_held;    ///< includes the append lock
    Range m_place;   ///< this writer's place in the queue
    Range m_earlier; ///< the places before it
    DWORD m_start = 0;
    DWORD m_wait = 0;
    bool m_sticks = false;       ///< a lock could not be released
    bool m_ignoresQueue = false; ///< a writer in the queue hangs
    bool m_triesOnce = false;    ///< the writer that holds the file hangs
};
