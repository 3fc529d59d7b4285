#include "tests/support/TypeLibraryWalk.h"

#include "common/com/Bstr.h"
#include "tests/support/ProgramFolder.h"

#include <catch2/catch.hpp>

#include <cstdlib>
#include <memory>

namespace {

std::string narrow(const UniqueBstr& text) {
    std::string result;
    for (wchar_t c : text.View())
        result += c < 0x80 ? static_cast<char>(c) : '?';
    return result;
}

std::wstring pathUnderTest() {
    if (const wchar_t* given = _wgetenv(L"JOBOBJECTS_TLB"))
        return given;
    return BesideProgram("Tarnwick.dll").wstring();
}

std::string userDefinedName(ITypeInfo& info, HREFTYPE reference) {
    ComPtr<ITypeInfo> target;
    REQUIRE(info.GetRefTypeInfo(reference, target.Put()) == S_OK);
    return documentationOf(*target.Get()).name;
}

std::string typeName(ITypeInfo& info, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_PTR:
        return typeName(info, *type.lptdesc) + "*";
    case VT_USERDEFINED:
        return userDefinedName(info, type.hreftype);
    case VT_BSTR:
        return "BSTR";
    case VT_I4:
        return "LONG";
    case VT_DATE:
        return "DATE";
    case VT_BOOL:
        return "VARIANT_BOOL";
    case VT_HRESULT:
        return "HRESULT";
    case VT_VOID:
        return "void";
    default:
        return "VT_" + std::to_string(type.vt);
    }
}

std::string flagNames(USHORT flags) {
    static const struct {
        USHORT flag;
        const char* name;
    } known[] = {{PARAMFLAG_FIN, "in"}, {PARAMFLAG_FOUT, "out"}, {PARAMFLAG_FRETVAL, "retval"}};
    std::string names;
    for (const auto& each : known) {
        if (!(flags & each.flag))
            continue;
        names += (names.empty() ? "" : ",") + std::string(each.name);
        flags = static_cast<USHORT>(flags & ~each.flag);
    }
    return flags ? names + ",flags " + std::to_string(flags) : names;
}

std::string kindName(INVOKEKIND kind) {
    switch (kind) {
    case INVOKE_PROPERTYGET:
        return "get";
    case INVOKE_PROPERTYPUT:
        return "put";
    case INVOKE_FUNC:
        return "method";
    default:
        return "kind " + std::to_string(kind);
    }
}

std::vector<std::string> namesOf(ITypeInfo& info, MEMBERID id, SHORT parameters) {
    std::vector<BSTR> raw(static_cast<std::size_t>(parameters) + 1);
    UINT count = 0;
    REQUIRE(info.GetNames(id, raw.data(), static_cast<UINT>(raw.size()), &count) == S_OK);
    std::vector<std::string> names;
    for (UINT i = 0; i < count; ++i) {
        UniqueBstr owned;
        *owned.Put() = raw[i];
        names.push_back(narrow(owned));
    }
    return names;
}

std::string parametersOf(ITypeInfo& info, const FUNCDESC& function, const std::vector<std::string>& names) {
    std::string text;
    for (SHORT i = 0; i < function.cParams; ++i) {
        const ELEMDESC& parameter = function.lprgelemdescParam[i];
        const std::size_t nameIndex = static_cast<std::size_t>(i) + 1;
        text += (text.empty() ? "[" : "; [") + flagNames(parameter.paramdesc.wParamFlags) + "] " +
                typeName(info, parameter.tdesc);
        if (nameIndex < names.size())
            text += " " + names[nameIndex];
    }
    return text.empty() ? "(none)" : text;
}

/// GetNames describes the first function of a DISPID, which is the get, so a put's parameters have no names.
std::vector<std::string> parameterNames(ITypeInfo& info, const FUNCDESC& function) {
    std::vector<std::string> names = namesOf(info, function.memid, function.cParams);
    if (function.invkind != INVOKE_FUNC && function.invkind != INVOKE_PROPERTYGET)
        names.resize(1);
    return names;
}

struct FuncDescRelease {
    ITypeInfo* info;
    void operator()(FUNCDESC* description) const { info->ReleaseFuncDesc(description); }
};

} // namespace

ComPtr<ITypeLib> loadLibraryUnderTest() {
    wchar_t path[MAX_PATH]; // converts the build's path to a Windows path
    REQUIRE(GetFullPathNameW(pathUnderTest().c_str(), MAX_PATH, path, nullptr) != 0);
    ComPtr<ITypeLib> library;
    REQUIRE(LoadTypeLibEx(path, REGKIND_NONE, library.Put()) == S_OK);
    return library;
}

ComPtr<ITypeInfo> typeNamed(ITypeLib& library, const std::string& name) {
    for (UINT i = 0; i < library.GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        REQUIRE(library.GetTypeInfo(i, info.Put()) == S_OK);
        if (documentationOf(*info.Get()).name == name)
            return info;
    }
    FAIL("The type library has no type " << name);
    return {};
}

ComPtr<ITypeInfo> vtableView(ITypeInfo& dispatchView) {
    HREFTYPE reference = 0;
    REQUIRE(dispatchView.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference) == S_OK);
    ComPtr<ITypeInfo> info;
    REQUIRE(dispatchView.GetRefTypeInfo(reference, info.Put()) == S_OK);
    return info;
}

TYPEATTR attributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    REQUIRE(info.GetTypeAttr(&attributes) == S_OK);
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

TLIBATTR attributesOf(ITypeLib& library) {
    TLIBATTR* attributes = nullptr;
    REQUIRE(library.GetLibAttr(&attributes) == S_OK);
    const TLIBATTR copy = *attributes;
    library.ReleaseTLibAttr(attributes);
    return copy;
}

std::string guidText(const GUID& guid) {
    wchar_t text[39];
    REQUIRE(StringFromGUID2(guid, text, 39) == 39);
    return narrow(UniqueBstr(text));
}

Documentation documentationOf(ITypeInfo& info, MEMBERID member) {
    UniqueBstr name, help, file;
    DWORD context = 0;
    REQUIRE(info.GetDocumentation(member, name.Put(), help.Put(), &context, file.Put()) == S_OK);
    return {narrow(name), narrow(help), narrow(file), context};
}

Documentation documentationOf(ITypeLib& library) {
    UniqueBstr name, help, file;
    DWORD context = 0;
    REQUIRE(library.GetDocumentation(-1, name.Put(), help.Put(), &context, file.Put()) == S_OK);
    return {narrow(name), narrow(help), narrow(file), context};
}

Function functionAt(ITypeInfo& info, UINT index) {
    FUNCDESC* raw = nullptr;
    REQUIRE(info.GetFuncDesc(index, &raw) == S_OK);
    const std::unique_ptr<FUNCDESC, FuncDescRelease> description(raw, FuncDescRelease{&info});
    const std::vector<std::string> names = parameterNames(info, *description);
    const Documentation documentation = documentationOf(info, description->memid);

    Function function;
    function.name = documentation.name;
    function.help = documentation.help;
    function.id = description->memid;
    function.invokeKind = description->invkind;
    function.functionKind = description->funckind;
    function.callingConvention = description->callconv;
    function.result = typeName(info, description->elemdescFunc.tdesc);
    function.flags = description->wFuncFlags;
    function.optionalParameters = description->cParamsOpt;
    const std::string signature = std::to_string(description->memid) + " | " +
                                  kindName(description->invkind) + " | " + function.name + " | " +
                                  parametersOf(info, *description, names);
    function.row = std::to_string(description->oVft / static_cast<int>(sizeof(void*))) + " | " + signature;
    function.dispatchRow = signature + " -> " + function.result;
    return function;
}

std::vector<Function> functionsOf(ITypeInfo& info) {
    std::vector<Function> functions;
    const UINT count = attributesOf(info).cFuncs;
    for (UINT i = 0; i < count; ++i)
        functions.push_back(functionAt(info, i));
    return functions;
}

bool hasFunction(ITypeInfo& info, MEMBERID id, INVOKEKIND kind) {
    ComPtr<ITypeInfo2> info2;
    REQUIRE(info.QueryInterface(IID_ITypeInfo2, info2.PutVoid()) == S_OK);
    UINT index = 0;
    const HRESULT found = info2->GetFuncIndexOfMemId(id, kind, &index);
    REQUIRE((found == S_OK || found == TYPE_E_ELEMENTNOTFOUND));
    return found == S_OK;
}
