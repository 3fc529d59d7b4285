#pragma once

#include "MethodName.h"
#include "ReferenceCount.h"
#include "ServerModule.h"
#include "common/com/ErrorReporting.h"

#include <new>

/// A stand-alone object: deletes itself on the last release and holds a module lock while it exists.
template<class Impl>
class ComObject final : public Impl {
public:
    ComObject() { OwnModule().Lock(); }

    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG count = Impl::Release();
        if (count == 0) {
            delete this;
            OwnModule().Unlock(); // last: the destructor still needs the library
        }
        return count;
    }

private:
    ~ComObject() = default;
};

/// The implementation inside an aggregate: its IUnknown methods delegate to the outer object.
template<class Impl>
class ContainedObject final : public Impl {
public:
    explicit ContainedObject(IUnknown* outer) : m_outer(outer) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return m_outer->QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return m_outer->AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return m_outer->Release(); }

private:
    IUnknown* m_outer; // not counted: the outer object outlives the inner one
};

/// The non-delegating IUnknown of an aggregated object.
template<class Impl>
class AggregatedObject final : public IUnknown {
public:
    explicit AggregatedObject(IUnknown* outer) : m_contained(outer) { OwnModule().Lock(); }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object)
            return E_POINTER;
        if (!InlineIsEqualGUID(iid, IID_IUnknown))
            return m_contained.FindInterface(iid, object);
        *object = static_cast<IUnknown*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return m_references.Add(); }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG count = m_references.Release();
        if (count == 0) {
            delete this;
            OwnModule().Unlock();
        }
        return count;
    }

private:
    ~AggregatedObject() = default;

    ReferenceCount<> m_references; // first: outlives m_contained
    ContainedObject<Impl> m_contained;
};

/// "Class::Class": the source of failures in a constructor.
template<class Impl>
inline constexpr const wchar_t* ConstructionSource = MethodName<Impl::ClassName, Impl::ClassName>.data();

/// Queries a new object and releases its initial reference.
inline HRESULT QueryNewObject(IUnknown* created, REFIID iid, void** object) {
    const HRESULT result = created->QueryInterface(iid, object);
    created->Release();
    return result;
}

/// Creator for a class that cannot be aggregated.
template<class Impl>
HRESULT CreateObject(IUnknown*, REFIID iid, void** object) noexcept {
    return RunMethod(ConstructionSource<Impl>, [&] {
        auto* created = new ComObject<Impl>;
        return QueryNewObject(static_cast<typename Impl::InterfaceType*>(created), iid, object);
    });
}

/// Creator for an aggregatable class.
template<class Impl>
HRESULT CreateAggregatableObject(IUnknown* outer, REFIID iid, void** object) noexcept {
    if (!outer)
        return CreateObject<Impl>(outer, iid, object);
    return RunMethod(ConstructionSource<Impl>,
                     [&] { return QueryNewObject(new AggregatedObject<Impl>(outer), iid, object); });
}
