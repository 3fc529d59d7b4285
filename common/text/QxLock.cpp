#include "QxLock.h"

#ifdef _WIN32
#include <windows.h>

// m_guard is an SRWLOCK declared as a pointer, so that the header does not need windows.h. All zero is
// unlocked.
static_assert(sizeof(SRWLOCK) == sizeof(void*));
static_assert(alignof(SRWLOCK) == alignof(void*));

/// A queued thread, on its own stack.
struct QxLock::Waiter {
    CONDITION_VARIABLE ready = CONDITION_VARIABLE_INIT;
    Waiter* next = nullptr;
    bool granted = false;

    void Sleep(void*& guard) noexcept {
        SleepConditionVariableSRW(&ready, reinterpret_cast<PSRWLOCK>(&guard), INFINITE, 0);
    }
    void Wake() noexcept { WakeConditionVariable(&ready); }
};

namespace {

void Acquire(void*& guard) noexcept {
    AcquireSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&guard));
}

void Release(void*& guard) noexcept {
    ReleaseSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&guard));
}

} // namespace

#else
#include <atomic>
#include <sched.h>

namespace {

void Acquire(void*& guard) noexcept {
    std::atomic_ref<void*> state(guard);
    void* free = nullptr;
    while (!state.compare_exchange_weak(free, &guard, std::memory_order_acquire)) {
        free = nullptr;
        sched_yield();
    }
}

void Release(void*& guard) noexcept {
    std::atomic_ref<void*>(guard).store(nullptr, std::memory_order_release);
}

} // namespace

/// A queued thread, on its own stack.
struct QxLock::Waiter {
    Waiter* next = nullptr;
    bool granted = false;

    void Sleep(void*& guard) noexcept {
        Release(guard);
        sched_yield();
        Acquire(guard);
    }
    void Wake() noexcept {}
};

#endif

void QxLock::lock() noexcept {
    Acquire(m_guard);
    if (m_held) {
        Waiter self;
        (m_first ? m_last->next : m_first) = &self;
        m_last = &self;
        while (!self.granted)
            self.Sleep(m_guard);
    }
    m_held = true;
    Release(m_guard);
}

void QxLock::unlock() noexcept {
    Acquire(m_guard);
    if (Waiter* const next = m_first) {
        // Handed over: the lock stays held, so that no other thread can overtake this waiter.
        m_first = next->next;
        next->granted = true;
        next->Wake();
    } else {
        m_held = false;
    }
    Release(m_guard);
}
