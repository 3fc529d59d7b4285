#pragma once

#include <windows.h>

#include <atomic>

/// What objects and class objects need of the module they belong to: its handle, the lock count that keeps
/// the library loaded, and callbacks that run before the library is unloaded.
class ServerModule {
public:
    using TerminationCallback = void (*)(void* context) noexcept;

    ServerModule(const ServerModule&) = delete;
    ServerModule& operator=(const ServerModule&) = delete;

    HINSTANCE Instance() const noexcept { return m_instance; }

    /// Each live instance, each class object that a client holds and each LockServer(TRUE) has one lock. Both
    /// return the new count.
    LONG Lock() noexcept { return ++m_lockCount; }
    LONG Unlock() noexcept { return --m_lockCount; }
    LONG LockCount() const noexcept { return m_lockCount; }

    /// Adds a callback that runs once when the module is torn down.
    HRESULT AddTerminationCallback(TerminationCallback callback, void* context) noexcept;

protected:
    constexpr ServerModule() noexcept = default;
    ~ServerModule() = default;

    void SetInstance(HINSTANCE instance) noexcept { m_instance = instance; }
    void RunTerminationCallbacks() noexcept;

private:
    struct Termination {
        TerminationCallback callback;
        void* context;
        Termination* next;
    };

    HINSTANCE m_instance = nullptr;
    std::atomic<LONG> m_lockCount{0};
    std::atomic<Termination*> m_terminations{nullptr};
};

/// The one module of this library, which defines this function.
ServerModule& OwnModule() noexcept;
