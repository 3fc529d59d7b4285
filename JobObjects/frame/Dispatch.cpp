#include "Dispatch.h"

namespace {

const DISPID* FindMember(TypeInfoHolder& holder, const wchar_t* name) noexcept {
    const MemberNames* names = holder.Names();
    return names ? names->Find(name) : nullptr;
}

} // namespace

HRESULT DispatchGetTypeInfoCount(UINT* count) noexcept {
    if (!count)
        return E_POINTER;
    *count = 1;
    return S_OK;
}

HRESULT DispatchGetTypeInfo(TypeInfoHolder& holder, UINT index, ITypeInfo** info) noexcept {
    if (!info)
        return E_POINTER;
    *info = nullptr;
    if (index != 0)
        return DISP_E_BADINDEX;
    const HRESULT result = holder.Get(info);
    if (SUCCEEDED(result))
        (*info)->AddRef();
    return result;
}

HRESULT DispatchGetIDsOfNames(TypeInfoHolder& holder, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
    if (!names || !ids)
        return E_POINTER;
    ITypeInfo* info = nullptr;
    const HRESULT result = holder.Get(&info);
    if (FAILED(result))
        return result;
    if (const DISPID* id = count == 1 && names[0] ? FindMember(holder, names[0]) : nullptr) {
        *ids = *id;
        return S_OK;
    }
    // Arguments and unknown names.
    return info->GetIDsOfNames(names, count, ids);
}

HRESULT DispatchInvoke(TypeInfoHolder& holder, IDispatch* object, DISPID id, REFIID iid, WORD flags,
                       DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                       UINT* badArgument) noexcept {
    if (!InlineIsEqualGUID(iid, IID_NULL))
        return DISP_E_UNKNOWNINTERFACE;
    if (!parameters)
        return E_POINTER;
    ITypeInfo* info = nullptr;
    const HRESULT loaded = holder.Get(&info);
    if (FAILED(loaded))
        return loaded;
    return info->Invoke(object, id, flags, parameters, result, exception, badArgument);
}
