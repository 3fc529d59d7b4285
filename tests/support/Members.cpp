#include "tests/support/Members.h"

#include "tests/support/TypeLibraryWalk.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>

namespace {

constexpr std::size_t LongestShown = 60;

Parameter ParameterFrom(ITypeInfo& info, const ELEMDESC& element) {
    const USHORT flags = element.paramdesc.wParamFlags;
    Parameter parameter{VT_EMPTY, (flags & PARAMFLAG_FOUT) != 0, (flags & PARAMFLAG_FRETVAL) != 0, IID{}};
    const TYPEDESC* type = &element.tdesc;
    if (parameter.isOut) {
        REQUIRE(type->vt == VT_PTR);
        type = type->lptdesc;
    }
    if (type->vt != VT_PTR) {
        parameter.type = type->vt;
        return parameter;
    }
    REQUIRE(type->lptdesc->vt == VT_USERDEFINED);
    ComPtr<ITypeInfo> target;
    REQUIRE_HR(info.GetRefTypeInfo(type->lptdesc->hreftype, target.Put()), S_OK);
    parameter.type = VT_DISPATCH;
    parameter.interfaceId = attributesOf(*target.Get()).guid;
    return parameter;
}

std::string ShowText(std::wstring_view text) {
    if (text.size() <= LongestShown)
        return "\"" + Narrow(text) + "\"";
    return std::to_string(text.size()) + " characters, hash " +
           std::to_string(std::hash<std::wstring_view>()(text));
}

} // namespace

Variant Variant::Number(LONG number) {
    Variant variant;
    variant.value.vt = VT_I4;
    variant.value.lVal = number;
    return variant;
}

Variant Variant::Flag(VARIANT_BOOL flag) {
    Variant variant;
    variant.value.vt = VT_BOOL;
    variant.value.boolVal = flag;
    return variant;
}

Variant Variant::Date(DATE date) {
    Variant variant;
    variant.value.vt = VT_DATE;
    variant.value.date = date;
    return variant;
}

Variant Variant::Text(std::wstring_view text) {
    Variant variant = NullText();
    variant.value.bstrVal = UniqueBstr(text).Detach();
    return variant;
}

Variant Variant::NullText() {
    Variant variant;
    variant.value.vt = VT_BSTR;
    variant.value.bstrVal = nullptr;
    return variant;
}

Variant Variant::Object(IDispatch* object) {
    Variant variant;
    variant.value.vt = VT_DISPATCH;
    variant.value.pdispVal = ComPtr<IDispatch>(object).Detach();
    return variant;
}

std::string Show(const VARIANT& value) {
    char text[64];
    switch (value.vt) {
    case VT_I4:
        return std::to_string(value.lVal);
    case VT_BOOL:
        if (value.boolVal == VARIANT_TRUE || value.boolVal == VARIANT_FALSE)
            return value.boolVal ? "true" : "false";
        return "flag " + std::to_string(value.boolVal);
    case VT_DATE:
        std::snprintf(text, sizeof(text), "date %.17g", value.date);
        return text;
    case VT_BSTR:
        return value.bstrVal ? ShowText(BstrView(value.bstrVal)) : "null text";
    case VT_DISPATCH:
        return value.pdispVal ? "object" : "no object";
    default:
        return "type " + std::to_string(value.vt);
    }
}

std::vector<Member> MembersOf(ITypeInfo& vtableView) {
    std::vector<Member> members;
    const UINT count = attributesOf(vtableView).cFuncs;
    for (UINT i = 0; i < count; ++i) {
        FUNCDESC* description = nullptr;
        REQUIRE_HR(vtableView.GetFuncDesc(i, &description), S_OK);
        Member member{documentationOf(vtableView, description->memid).name,
                      description->memid,
                      description->invkind,
                      static_cast<ULONG_PTR>(description->oVft),
                      {}};
        for (SHORT p = 0; p < description->cParams; ++p)
            member.parameters.push_back(ParameterFrom(vtableView, description->lprgelemdescParam[p]));
        vtableView.ReleaseFuncDesc(description);
        members.push_back(std::move(member));
    }
    return members;
}

HRESULT CallSlot(IUnknown* object, const Member& member, std::vector<VARIANT> arguments) {
    REQUIRE(arguments.size() == member.parameters.size());
    std::vector<VARTYPE> types;
    std::vector<VARIANTARG*> pointers;
    for (VARIANT& argument : arguments) {
        types.push_back(argument.vt);
        pointers.push_back(&argument);
    }
    VARIANT result;
    VariantInit(&result);
    REQUIRE_HR(DispCallFunc(object, member.offset, CC_STDCALL, VT_I4, static_cast<UINT>(arguments.size()),
                            types.data(), pointers.data(), &result),
               S_OK);
    return result.lVal;
}

VARIANT ByReference(VARTYPE type, VARIANT* place) {
    VARIANT argument;
    VariantInit(&argument);
    argument.vt = static_cast<VARTYPE>(VT_BYREF | type);
    argument.byref = place ? &place->llVal : nullptr;
    return argument;
}

VARIANT Garbage() {
    VARIANT place;
    VariantInit(&place);
    std::memset(&place.llVal, 0xCD, sizeof(place.llVal));
    return place;
}

bool IsGarbage(const VARIANT& place, VARTYPE type) {
    const VARIANT garbage = Garbage();
    const std::size_t size = type == VT_BOOL ? 2 : type == VT_DATE ? 8 : 4;
    return std::memcmp(&place.llVal, &garbage.llVal, size) == 0;
}

GetResult GetThroughSlot(IUnknown* object, const Member& getter) {
    const VARTYPE type = getter.parameters.at(0).type;
    VARIANT place = Garbage();
    GetResult got{CallSlot(object, getter, {ByReference(type, &place)}), {}, false};
    got.isUntouched = IsGarbage(place, type);
    if (SUCCEEDED(got.result) && !got.isUntouched) {
        place.vt = type;
        got.value.value = place;
    }
    return got;
}

HRESULT PutThroughSlot(IUnknown* object, const Member& putter, const Variant& value) {
    return CallSlot(object, putter, {value.value});
}

InvokeResult Invoke(IDispatch* object, MEMBERID id, WORD flags, std::vector<VARIANT> arguments) {
    std::reverse(arguments.begin(), arguments.end());
    DISPID put = DISPID_PROPERTYPUT;
    const bool isPut = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
    DISPPARAMS parameters{arguments.data(), isPut ? &put : nullptr, static_cast<UINT>(arguments.size()),
                          isPut ? 1u : 0u};
    EXCEPINFO exception{};
    InvokeResult invoked{S_OK, S_OK, {}};
    invoked.result = object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                    isPut ? nullptr : &invoked.value.value, &exception, nullptr);
    if (invoked.result == DISP_E_EXCEPTION)
        invoked.exceptionCode = exception.scode;
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
    return invoked;
}
