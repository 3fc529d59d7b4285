#pragma once

#include "ClassMap.h"
#include "JobObjects/frame/ServerModule.h"
#include "common/com/ComPtr.h"
#include "common/text/QxLock.h"

#include <windows.h>
#include <objidl.h>

#include <array>
#include <atomic>

/// The library's one module object: caches the class objects and releases them before the library is
/// unloaded. Constant-initialised.
class CJobObjectsModule : public ServerModule {
public:
    constexpr CJobObjectsModule() noexcept = default;

    void Initialize(HINSTANCE instance) noexcept { SetInstance(instance); }
    /// Runs the termination callbacks and releases the class objects. No instance may be alive.
    void Terminate() noexcept;

    /// Queries the class object, which is created on first request and cached.
    HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) noexcept;

    /// Contract. The process's global interface table, created on first request, with one reference added.
    HRESULT GetGlobalInterfaceTable(IGlobalInterfaceTable** table) noexcept;

private:
    HRESULT MakeClassObject(std::size_t index) noexcept;

    QxLock m_classObjectLock;
    /// Encoded pointers, so that a stray write cannot redirect a call; null until created.
    std::array<std::atomic<void*>, ClassCount> m_classObjects{};
    std::atomic<IGlobalInterfaceTable*> m_globalInterfaceTable{nullptr};
};

CJobObjectsModule& TheModule() noexcept;
