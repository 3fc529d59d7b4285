// The table of member names, with names that the library's interfaces lack.

#include "JobObjects/frame/MemberNames.h"

#include "common/com/ComPtr.h"

#include <catch2/catch.hpp>

#include <deque>

namespace {

/// Type information of an interface with methods of these names, whose DISPIDs count from 1.
ComPtr<ITypeInfo> TypeInfoOf(std::deque<std::wstring> names) {
    std::vector<METHODDATA> methods;
    for (std::wstring& name : names) {
        METHODDATA method = {};
        method.szName = name.data();
        method.dispid = static_cast<DISPID>(methods.size() + 1);
        method.iMeth = static_cast<UINT>(methods.size());
        method.cc = CC_STDCALL;
        method.wFlags = DISPATCH_METHOD;
        method.vtReturn = VT_EMPTY;
        methods.push_back(method);
    }
    INTERFACEDATA interfaceData = {methods.data(), static_cast<UINT>(methods.size())};
    ComPtr<ITypeInfo> info;
    REQUIRE(CreateDispTypeInfo(&interfaceData, LOCALE_NEUTRAL, info.Put()) == S_OK);
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
    const std::deque<std::wstring> others = {L"Name2", L"N@me", L"[Name", L"Name`", L"{Name", L"N\x00E4me"};
    const ComPtr<ITypeInfo> info = TypeInfoOf(others);
    const MemberNames names(*info.Get());
    for (const std::wstring& name : others)
        CHECK(Found(names, name.c_str()) == DISPID_UNKNOWN);
}
