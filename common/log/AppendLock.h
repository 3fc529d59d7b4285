#pragma once

#include <windows.h>

/// The right to append to a file that several processes write to, as locks on bytes beyond any real offset,
/// so that readers of the file never block.
///
/// Writers get it in the order in which they asked, so none starves. The system's own queue of blocked locks
/// is not used: a wait in it has no limit, and a writer may be stopped or hang while it holds the lock.
class AppendLock {
public:
    /// Waits for other writers for a few seconds at most. After one timeout it tries once per call until the
    /// file is free again: a hung writer costs one delay. On failure the reason is the last error.
    bool Take(HANDLE file) noexcept;
    /// To be called after each Take. False if the system did not release a lock; closing the file does.
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
    Range m_held;    ///< with the right to append
    Range m_place;   ///< this writer's place in the queue
    Range m_earlier; ///< the places before it
    DWORD m_start = 0;
    DWORD m_wait = 0;
    bool m_sticks = false;       ///< a lock could not be released
    bool m_ignoresQueue = false; ///< a writer in the queue hangs
    bool m_triesOnce = false;    ///< the writer that holds the file hangs
};
