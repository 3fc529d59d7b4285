#pragma once

#include <windows.h>

#include <atomic>

/// The module as its objects see it: handle, the lock count that keeps the library loaded, and callbacks to
/// run before unloading.
class ServerModule {
public:
    using TerminationCallback = void (*)(void* context) noexcept;

    ServerModule(const ServerModule&) = delete;
    ServerModule& operator=(const ServerModule&) = delete;

    HINSTANCE Instance() const noexcept { return m_instance; }
    /// Whether the address is in the library's image.
    bool Contains(const void* address) const noexcept;

    // One lock for each live instance, each class object that a client holds and each LockServer(TRUE).

    /// Contract: Lock and Unlock return the new count.
    LONG Lock() noexcept { return ++m_lockCount; }
    LONG Unlock() noexcept { return --m_lockCount; }
    LONG LockCount() const noexcept { return m_lockCount; }

    /// The callback runs once, before the library is unloaded.
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

/// The library's one module; CJobObjectsModule.cpp defines this function.
ServerModule& OwnModule() noexcept;
