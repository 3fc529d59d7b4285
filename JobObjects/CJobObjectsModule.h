#pragma once

#include "ClassMap.h"
#include "common/ComPtr.h"
#include "common/QxLock.h"

#include <windows.h>
#include <objidl.h>

#include <array>
#include <atomic>

/// The library's one module object: the lock count that keeps it loaded, the cached class objects, and what
/// has to be given back before the library goes.
///
/// Constant-initialised; Initialize and Terminate are called when the library is attached and unloaded.
class CJobObjectsModule {
public:
    using TerminationCallback = void (*)(void* context) noexcept;

    constexpr CJobObjectsModule() noexcept = default;

    void Initialize(HINSTANCE instance) noexcept { m_instance = instance; }
    /// Runs the termination callbacks and releases the class objects. Nothing may be alive any more.
    void Terminate() noexcept;

    HINSTANCE Instance() const noexcept { return m_instance; }

    /// The lock count keeps the library loaded: each live instance, each class object that a client holds
    /// and each LockServer(TRUE) has one. Both return the new count.
    LONG Lock() noexcept { return ++m_lockCount; }
    LONG Unlock() noexcept { return --m_lockCount; }
    LONG LockCount() const noexcept { return m_lockCount; }

    /// Hands out the cached class object of a class, made on first request.
    HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) noexcept;

    /// The process's global interface table, created on first request, with one reference added.
    HRESULT GetGlobalInterfaceTable(IGlobalInterfaceTable** table) noexcept;

    /// Adds a callback that runs once when the module is torn down.
    HRESULT AddTerminationCallback(TerminationCallback callback, void* context) noexcept;

private:
    struct Termination {
        TerminationCallback callback;
        void* context;
        Termination* next;
    };

    HRESULT MakeClassObject(std::size_t index) noexcept;

    HINSTANCE m_instance = nullptr;
    std::atomic<LONG> m_lockCount{0};
    QxLock m_classObjectLock;
    /// Encoded pointers, so that a stray write cannot redirect a call; null until made.
    std::array<std::atomic<void*>, ClassCount> m_classObjects{};
    std::atomic<IGlobalInterfaceTable*> m_globalInterfaceTable{nullptr};
    std::atomic<Termination*> m_terminations{nullptr};
};

CJobObjectsModule& TheModule() noexcept;
