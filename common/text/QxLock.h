#pragma once

/// A process-wide exclusive lock for std::lock_guard. Threads get it in the order in which they asked, so a
/// thread that takes it again and again starves no other. std::mutex is not used: it does not exist under
/// every thread model this library is built with. Needs no construction at load and no destruction at unload.
class QxLock {
public:
    constexpr QxLock() noexcept = default;
    QxLock(const QxLock&) = delete;
    QxLock& operator=(const QxLock&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    struct Waiter;

    void* m_guard = nullptr; // guards the other members: an SRWLOCK on Windows; a spin word elsewhere
    Waiter* m_first = nullptr;
    Waiter* m_last = nullptr;
    bool m_held = false;
};
