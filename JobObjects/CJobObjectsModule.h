#pragma once

#include "ClassMap.h"
#include "JobObjects/frame/ServerModule.h"
#include "common/com/ComPtr.h"
#include "common/text/QxLock.h"

#include <windows.h>
#include <objidl.h>

#include <array>
#include <atomic>

/// The library's one module object: the cached class objects and what has to be released before the library
/// is unloaded.
///
/// Constant-initialised; Initialize and Terminate are called when the library is attached and unloaded.
class CJobObjectsModule : public ServerModule {
public:
    constexpr CJobObjectsModule() noexcept = default;

    void Initialize(HINSTANCE instance) noexcept { SetInstance(instance); }
    /// Runs the termination callbacks and releases the class objects. Nothing may be alive any more.
    void Terminate() noexcept;

    /// Hands out the cached class object of a class, made on first request.
    HRESULT GetClassObject(REFCLSID classId, REFIID iid, void** object) noexcept;

    /// The process's global interface table, created on first request, with one reference added.
    HRESULT GetGlobalInterfaceTable(IGlobalInterfaceTable** table) noexcept;

private:
    HRESULT MakeClassObject(std::size_t index) noexcept;

    QxLock m_classObjectLock;
    /// Encoded pointers, so that a stray write cannot redirect a call; null until made.
    std::array<std::atomic<void*>, ClassCount> m_classObjects{};
    std::atomic<IGlobalInterfaceTable*> m_globalInterfaceTable{nullptr};
};

CJobObjectsModule& TheModule() noexcept;
