#include "QxLock.h"

#ifdef _WIN32
#include <windows.h>

// A zeroed SRWLOCK is a free lock, and it is one pointer wide: the member can stand in for it, so that the
// header does not need windows.h.
static_assert(sizeof(SRWLOCK) == sizeof(void*));
static_assert(alignof(SRWLOCK) == alignof(void*));

void QxLock::lock() noexcept {
    AcquireSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&m_state));
}

void QxLock::unlock() noexcept {
    ReleaseSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&m_state));
}

#else
#include <atomic>
#include <sched.h>

void QxLock::lock() noexcept {
    std::atomic_ref<void*> state(m_state);
    void* free = nullptr;
    while (!state.compare_exchange_weak(free, this, std::memory_order_acquire)) {
        free = nullptr;
        sched_yield();
    }
}

void QxLock::unlock() noexcept {
    std::atomic_ref<void*>(m_state).store(nullptr, std::memory_order_release);
}

#endif
