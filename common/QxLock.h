#pragma once

/// A process-wide exclusive lock for std::lock_guard. std::mutex is not used: it does not exist under every
/// thread model this library is built with. Needs no construction at load and no destruction at unload.
class QxLock {
public:
    constexpr QxLock() noexcept = default;
    QxLock(const QxLock&) = delete;
    QxLock& operator=(const QxLock&) = delete;

    void lock() noexcept;
    void unlock() noexcept;

private:
    void* m_state = nullptr; // an SRWLOCK on Windows; a spin word elsewhere
};
