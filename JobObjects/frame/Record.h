#pragma once

#include "Dispatch.h"
#include "JobObjects.h"
#include "ReferenceCount.h"
#include "common/com/ErrorReporting.h"

/// Base of the ten implementation classes: interfaces, reference count, late binding and ISupportErrorInfo.
/// The wrapper in ComObject.h deletes the object.
template<class Interface, const IID& interfaceId>
class Record : public Interface, public ISupportErrorInfo {
public:
    using InterfaceType = Interface;

    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    /// Queries the record's own interfaces, without delegating to an outer object.
    HRESULT FindInterface(REFIID iid, void** object) noexcept {
        if (!object)
            return E_POINTER;
        *object = nullptr;
        if (InlineIsEqualGUID(iid, IID_IUnknown) || InlineIsEqualGUID(iid, IID_IDispatch) ||
            InlineIsEqualGUID(iid, interfaceId))
            *object = static_cast<Interface*>(this);
        else if (InlineIsEqualGUID(iid, IID_ISupportErrorInfo))
            *object = static_cast<ISupportErrorInfo*>(this);
        else
            return E_NOINTERFACE;
        static_cast<Interface*>(this)->AddRef();
        return S_OK;
    }

    // Here and not in the wrapper, so that children can still call them while the record's members are
    // destroyed. The count is not interlocked: the classes are apartment-threaded.

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return FindInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return m_references.Add(); }
    ULONG STDMETHODCALLTYPE Release() override { return m_references.Release(); }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        return DispatchGetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return DispatchGetTypeInfo(s_typeInfo, index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return DispatchGetIDsOfNames(s_typeInfo, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO* exception, UINT* badArgument) override {
        return DispatchInvoke(s_typeInfo, static_cast<Interface*>(this), id, iid, flags, parameters, result,
                              exception, badArgument);
    }

    HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override {
        return InlineIsEqualGUID(iid, interfaceId) ? S_OK : S_FALSE;
    }

protected:
    Record() = default;
    virtual ~Record() = default;

private:
    ReferenceCount<> m_references;
    inline static constinit TypeInfoHolder s_typeInfo{interfaceId};
};
