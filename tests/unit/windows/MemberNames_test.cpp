// The table of member names, with names that the library's interfaces lack.

#include "JobObjects/frame/MemberNames.h"

#include "common/com/ComPtr.h"

#include <catch2/catch.hpp>

#include <string>
#include <vector>

namespace {

/// Type information of an interface with methods of these names, whose DISPIDs count from 1.
ComPtr<ITypeInfo> TypeInfoOf(const std::vector<std::wstring>& names) {
    ComPtr<ICreateTypeLib2> library;
    REQUIRE(CreateTypeLib2(SYS_WIN32, L"names.tlb", library.Put()) == S_OK); // the file is never written
    ComPtr<ICreateTypeInfo> created;
    REQUIRE(library->CreateTypeInfo(const_cast<wchar_t*>(L"Names"), TKIND_INTERFACE, created.Put()) == S_OK);
    for (UINT index = 0; index < names.size(); ++index) {
        FUNCDESC function = {};
        function.memid = static_cast<MEMBERID>(index + 1);
        function.funckind = FUNC_PUREVIRTUAL;
        function.invkind = INVOKE_FUNC;
        function.callconv = CC_STDCALL;
        function.elemdescFunc.tdesc.vt = VT_HRESULT;
        REQUIRE(created->AddFuncDesc(index, &function) == S_OK);
        auto* name = const_cast<wchar_t*>(names[index].c_str());
        REQUIRE(created->SetFuncAndParamNames(index, &name, 1) == S_OK);
    }
    REQUIRE(created->LayOut() == S_OK);
    ComPtr<ITypeInfo> info;
    REQUIRE(created->QueryInterface(IID_ITypeInfo, info.PutVoid()) == S_OK);
    return info;
}

DISPID Found(const MemberNames& names, const wchar_t* name) {
    const DISPID* id = names.Find(name);
    return id ? *id : DISPID_UNKNOWN;
}

} // namespace

TEST_CASE("MemberNames_of_any_letters_are_found_in_either_case") {
    const ComPtr<ITypeInfo> info = TypeInfoOf({L"AaZz", L"Z", L"a", L"zeroA"});
    const MemberNames names(*info.Get());
    CHECK(Found(names, L"AaZz") == 1);
    CHECK(Found(names, L"aAzZ") == 1);
    CHECK(Found(names, L"Z") == 2);
    CHECK(Found(names, L"z") == 2);
    CHECK(Found(names, L"A") == 3);
    CHECK(Found(names, L"a") == 3);
    CHECK(Found(names, L"ZEROa") == 4);
    for (const wchar_t* unknown : {L"", L"b", L"AaZ", L"AaZzz", L"AbZz"})
        CHECK(Found(names, unknown) == DISPID_UNKNOWN);
}

TEST_CASE("MemberNames_with_other_characters_are_left_to_the_type_information") {
    const std::vector<std::wstring> others = {L"Name2", L"N@me", L"[Name", L"Name`", L"{Name", L"N\x00E4me"};
    const ComPtr<ITypeInfo> info = TypeInfoOf(others);
    const MemberNames names(*info.Get());
    for (const std::wstring& name : others)
        CHECK(Found(names, name.c_str()) == DISPID_UNKNOWN);
}
