#include "ClassFactory.h"

#include "ServerModule.h"

#include <new>

IUnknown* ClassFactory::Create(const ClassMapEntry& entry) noexcept {
    return new (std::nothrow) ClassFactory(entry);
}

HRESULT ClassFactory::QueryInterface(REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    if (!InlineIsEqualGUID(iid, IID_IUnknown) && !InlineIsEqualGUID(iid, IID_IClassFactory))
        return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    AddRef();
    return S_OK;
}

ULONG ClassFactory::AddRef() {
    const ULONG count = m_references.Add();
    if (count == 2) // the first reference beyond the module's cache
        OwnModule().Lock();
    return count;
}

ULONG ClassFactory::Release() {
    const ULONG count = m_references.Release();
    if (count == 1)
        OwnModule().Unlock();
    if (count == 0)
        delete this;
    return count;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) {
    if (!object)
        return E_POINTER;
    *object = nullptr;
    // Aggregation must request IUnknown: every other interface of the inner object delegates to the outer
    // one.
    if (outer && !(m_entry.aggregatable && InlineIsEqualGUID(iid, IID_IUnknown)))
        return CLASS_E_NOAGGREGATION;
    return m_entry.createInstance(outer, iid, object);
}

HRESULT ClassFactory::LockServer(BOOL lock) {
    if (lock)
        OwnModule().Lock();
    else
        OwnModule().Unlock();
    return S_OK;
}
