#pragma once

#include "ClassMapEntry.h"
#include "ReferenceCount.h"

#include <atomic>

/// The class object of one class. The module caches it with one reference until unloading; any further
/// reference keeps the library loaded.
class ClassFactory final : public IClassFactory {
public:
    /// With one reference; null if out of memory.
    static IUnknown* Create(const ClassMapEntry& entry) noexcept;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

private:
    explicit ClassFactory(const ClassMapEntry& entry) noexcept : m_entry(entry) {}
    virtual ~ClassFactory() = default;

    const ClassMapEntry& m_entry;
    ReferenceCount<std::atomic<ULONG>> m_references;
};
