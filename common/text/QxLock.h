#pragma once

/// A fair exclusive lock for std::lock_guard: threads get it in the order of their requests, so none starves.
/// Not std::mutex, which some of the compiler's thread models lack. Constant-initialised, trivially
/// destroyed.
class QxLock {
public:
    constexpr QxLock() noexcept = default;
    QxLock(const QxLock&) = delete;
    QxLock& operator=(const QxLock&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    struct Waiter;

    void* m_guard = nullptr; // guards the other members: an SRWLOCK on Windows, a spin lock elsewhere
    Waiter* m_first = nullptr;
    Waiter* m_last = nullptr;
    bool m_held = false;
};
