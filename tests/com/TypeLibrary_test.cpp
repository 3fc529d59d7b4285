// Compares every member of the built type library with TypeLibrary_expected.cpp, in both views of a dual
// interface: the vtable, and the dispatch view that late binding uses.

#include "tests/support/TypeLibraryWalk.h"
#include "tests/support/TypeLibrary_expected.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

namespace {

constexpr int InheritedSlots = 7; // IUnknown and IDispatch
constexpr MEMBERID FirstInheritedId = 0x60000000;

/// One column of an expected row.
std::string column(const std::string& row, int index) {
    std::string rest = row;
    for (; index > 0; --index)
        rest = rest.substr(rest.find(" | ") + 3);
    return rest.substr(0, rest.find(" | "));
}

MEMBERID idOf(const std::string& row) {
    return std::stol(column(row, 1));
}

std::string prefixOf(const std::string& kind) {
    return kind == "method" ? "method " : "property ";
}

/// The row for the dispatch view: no slot, and the retval parameter is the result.
std::string dispatchRowOf(const std::string& row) {
    std::string parameters = column(row, 4), result = "void";
    const std::size_t retval = parameters.find("[out,retval] ");
    if (retval != std::string::npos) {
        std::istringstream words(parameters.substr(retval + 13));
        words >> result;
        result.pop_back();
        parameters = retval ? parameters.substr(0, retval - 2) : "(none)";
    }
    return column(row, 1) + " | " + column(row, 2) + " | " + column(row, 3) + " | " + parameters + " -> " +
           result;
}

std::vector<Function> ownFunctions(ITypeInfo& dispatchView) {
    std::vector<Function> own;
    for (Function& function : functionsOf(dispatchView))
        if (function.id < FirstInheritedId)
            own.push_back(std::move(function));
    return own;
}

void checkIdentity(ITypeInfo& info, const ExpectedInterface& expected) {
    const TYPEATTR attributes = attributesOf(info);
    const Documentation documentation = documentationOf(info);
    CHECK(guidText(attributes.guid) == expected.iid);
    CHECK(documentation.name == expected.name);
    CHECK(documentation.help == expected.name + " Interface");
    CHECK(attributes.cVars == 0);
}

void checkBaseIsIDispatch(ITypeInfo& info) {
    HREFTYPE reference = 0;
    REQUIRE(info.GetRefTypeOfImplType(0, &reference) == S_OK);
    ComPtr<ITypeInfo> base;
    REQUIRE(info.GetRefTypeInfo(reference, base.Put()) == S_OK);
    CHECK(attributesOf(*base.Get()).guid == IID_IDispatch);
    ComPtr<ITypeLib> home;
    UINT index = 0;
    REQUIRE(base->GetContainingTypeLib(home.Put(), &index) == S_OK);
    CHECK(guidText(attributesOf(*home.Get()).guid) == "{00020430-0000-0000-C000-000000000046}");
}

void checkVtableView(ITypeInfo& info, const ExpectedInterface& expected) {
    checkIdentity(info, expected);
    const TYPEATTR attributes = attributesOf(info);
    CHECK(attributes.typekind == TKIND_INTERFACE);
    CHECK(attributes.wTypeFlags == (TYPEFLAG_FDUAL | TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FDISPATCHABLE));
    CHECK(attributes.cFuncs == expected.entries);
    CHECK(attributes.cbSizeVft == (InheritedSlots + expected.entries) * sizeof(void*));
    CHECK(attributes.cImplTypes == 1);
    checkBaseIsIDispatch(info);

    const std::vector<Function> functions = functionsOf(info);
    REQUIRE(functions.size() == expected.rows.size());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        const Function& function = functions[i];
        CHECK(function.row == expected.rows[i]);
        CHECK(function.help == prefixOf(column(expected.rows[i], 2)) + column(expected.rows[i], 3));
        INFO(expected.name << ": " << function.row);
        CHECK(function.result == "HRESULT");
        CHECK(function.functionKind == FUNC_PUREVIRTUAL);
        CHECK(function.callingConvention == CC_STDCALL);
        CHECK(function.flags == 0);
        CHECK(function.optionalParameters == 0);
    }
}

void checkDispatchView(ITypeInfo& info, const ExpectedInterface& expected) {
    checkIdentity(info, expected);
    const TYPEATTR attributes = attributesOf(info);
    CHECK(attributes.typekind == TKIND_DISPATCH);
    const WORD required = TYPEFLAG_FDUAL | TYPEFLAG_FDISPATCHABLE;
    CHECK((attributes.wTypeFlags & required) == required);
    CHECK((attributes.wTypeFlags & (TYPEFLAG_FHIDDEN | TYPEFLAG_FRESTRICTED | TYPEFLAG_FNONEXTENSIBLE)) == 0);

    const std::vector<Function> functions = ownFunctions(info);
    REQUIRE(functions.size() == expected.rows.size());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        CHECK(functions[i].dispatchRow == dispatchRowOf(expected.rows[i]));
        CHECK(functions[i].functionKind == FUNC_DISPATCH);
        CHECK(functions[i].flags == 0);
    }
}

void checkInterface(const std::string& name) {
    const ExpectedInterface& expected = expectedInterface(name);
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    const ComPtr<ITypeInfo> dispatchView = typeNamed(*library.Get(), name);
    checkDispatchView(*dispatchView.Get(), expected);
    checkVtableView(*vtableView(*dispatchView.Get()).Get(), expected);
}

bool isInLibrary(ITypeLib& library, const wchar_t* name) {
    std::wstring writable(name);
    BOOL found = FALSE;
    REQUIRE(library.IsName(writable.data(), 0, &found) == S_OK);
    return found != FALSE;
}

MEMBERID highestId(const ExpectedInterface& expected) {
    MEMBERID highest = 0;
    for (const std::string& row : expected.rows)
        highest = std::max(highest, idOf(row));
    return highest;
}

bool hasMember(ITypeInfo& info, MEMBERID id) {
    return hasFunction(info, id, INVOKE_PROPERTYGET) || hasFunction(info, id, INVOKE_PROPERTYPUT) ||
           hasFunction(info, id, INVOKE_FUNC);
}

bool isReadOnlyByRule(const std::string& interfaceName, const std::string& member) {
    const bool isContents =
        interfaceName == "IJobContents" || interfaceName == "ICopyLines" || interfaceName == "ICopyLine";
    return member == "Version" || (interfaceName == "IPrintJob" && member == "PageCounterInfoXml") ||
           (isContents && (member.rfind("DB", 0) == 0 || member.rfind("Total", 0) == 0));
}

} // namespace

TEST_CASE("TypeLibrary_itself_has_the_published_identity") {
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    const TLIBATTR attributes = attributesOf(*library.Get());
    CHECK(guidText(attributes.guid) == "{D47A619E-7CB5-4B98-9A01-93662E11761E}");
    CHECK(attributes.wMajorVerNum == 1);
    CHECK(attributes.wMinorVerNum == 0);
    CHECK(attributes.lcid == 0x0409);
    CHECK(attributes.syskind == (sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32));
    CHECK((attributes.wLibFlags & (LIBFLAG_FRESTRICTED | LIBFLAG_FCONTROL | LIBFLAG_FHIDDEN)) == 0);

    const Documentation documentation = documentationOf(*library.Get());
    CHECK(documentation.name == "JobObjectsLib");
    CHECK(documentation.help == "Corvane OutputManagement JobObjects 1.0 Type Library");
    CHECK(documentation.helpFile.empty());
    CHECK(documentation.helpContext == 0);
}

TEST_CASE("TypeLibrary_types_are_the_ten_interfaces_and_the_ten_classes") {
    std::set<std::string> expected, interfaces, classes;
    for (const ExpectedInterface& each : expectedInterfaces())
        expected.insert(each.name);
    for (const ExpectedClass& each : expectedClasses())
        expected.insert(each.name);
    REQUIRE(expected.size() == 20);

    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    std::set<std::string> found;
    for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
        ComPtr<ITypeInfo> info;
        REQUIRE(library->GetTypeInfo(i, info.Put()) == S_OK);
        found.insert(documentationOf(*info.Get()).name);
    }
    CHECK(library->GetTypeInfoCount() == 20);
    CHECK(found == expected);
}

TEST_CASE("TypeLibrary_has_as_many_members_as_the_tables") {
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    std::size_t stored = 0, rows = 0, entries = 0;
    for (const ExpectedInterface& each : expectedInterfaces()) {
        const ComPtr<ITypeInfo> info = vtableView(*typeNamed(*library.Get(), each.name).Get());
        stored += attributesOf(*info.Get()).cFuncs;
        rows += each.rows.size();
        entries += each.entries;
    }
    CHECK(rows == entries);
    CHECK(entries == 70 + 28 + 9 + 21 + 50 + 18 + 19 + 25 + 25 + 64);
    CHECK(stored == entries);
}

TEST_CASE("TypeLibrary_class_is_creatable_and_has_one_default_interface") {
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    for (const ExpectedClass& expected : expectedClasses()) {
        INFO(expected.name);
        const ComPtr<ITypeInfo> info = typeNamed(*library.Get(), expected.name);
        const TYPEATTR attributes = attributesOf(*info.Get());
        CHECK(attributes.typekind == TKIND_COCLASS);
        CHECK(guidText(attributes.guid) == expected.clsid);
        CHECK(attributes.wTypeFlags == TYPEFLAG_FCANCREATE);
        CHECK(documentationOf(*info.Get()).help == expected.help);
        REQUIRE(attributes.cImplTypes == 1);

        INT flags = 0;
        REQUIRE(info->GetImplTypeFlags(0, &flags) == S_OK);
        CHECK(flags == IMPLTYPEFLAG_FDEFAULT);
        HREFTYPE reference = 0;
        REQUIRE(info->GetRefTypeOfImplType(0, &reference) == S_OK);
        ComPtr<ITypeInfo> implemented;
        REQUIRE(info->GetRefTypeInfo(reference, implemented.Put()) == S_OK);
        CHECK(documentationOf(*implemented.Get()).name == expected.defaultInterface);
        CHECK(guidText(attributesOf(*implemented.Get()).guid) ==
              expectedInterface(expected.defaultInterface).iid);
    }
}

TEST_CASE("TypeLibrary_IPrintJob_members_are_as_published") {
    checkInterface("IPrintJob");
}

TEST_CASE("TypeLibrary_IJobContents_members_are_as_published") {
    checkInterface("IJobContents");
}

TEST_CASE("TypeLibrary_ICopyLines_members_are_as_published") {
    checkInterface("ICopyLines");
}

TEST_CASE("TypeLibrary_ICopyLine_members_are_as_published") {
    checkInterface("ICopyLine");
}

TEST_CASE("TypeLibrary_IWindowsPrintInfo_members_are_as_published") {
    checkInterface("IWindowsPrintInfo");
}

TEST_CASE("TypeLibrary_IPolicyResults_members_are_as_published") {
    checkInterface("IPolicyResults");
}

TEST_CASE("TypeLibrary_ICopyJob_members_are_as_published") {
    checkInterface("ICopyJob");
}

TEST_CASE("TypeLibrary_IScanJob_members_are_as_published") {
    checkInterface("IScanJob");
}

TEST_CASE("TypeLibrary_IFaxJob_members_are_as_published") {
    checkInterface("IFaxJob");
}

TEST_CASE("TypeLibrary_ILogicalPrinter_members_are_as_published") {
    checkInterface("ILogicalPrinter");
}

TEST_CASE("TypeLibrary_dispids_in_a_gap_name_no_member") {
    const std::map<std::string, std::set<MEMBERID>> gaps = {
        {"IPrintJob", {17}},
        {"IJobContents", {13}},
        {"ICopyLines", {3}},
        {"ILogicalPrinter", {7, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41}},
    };
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    for (const ExpectedInterface& expected : expectedInterfaces()) {
        const ComPtr<ITypeInfo> info = typeNamed(*library.Get(), expected.name);
        const auto own = gaps.find(expected.name);
        const MEMBERID last = highestId(expected);
        for (MEMBERID id = 0; id <= last + 1; ++id) {
            const bool isGap = id == 0 || id > last || (own != gaps.end() && own->second.contains(id));
            INFO(expected.name << " DISPID " << id);
            CHECK(hasMember(*info.Get(), id) == !isGap);
        }
    }
}

TEST_CASE("TypeLibrary_read_only_properties_have_a_get_and_no_put") {
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    std::size_t checked = 0;
    for (const ExpectedInterface& expected : expectedInterfaces()) {
        const ComPtr<ITypeInfo> info = typeNamed(*library.Get(), expected.name);
        for (const Function& function : ownFunctions(*info.Get())) {
            if (!isReadOnlyByRule(expected.name, function.name))
                continue;
            INFO(expected.name << "." << function.name);
            CHECK(hasFunction(*info.Get(), function.id, INVOKE_PROPERTYGET));
            CHECK_FALSE(hasFunction(*info.Get(), function.id, INVOKE_PROPERTYPUT));
            CHECK_FALSE(hasFunction(*info.Get(), function.id, INVOKE_PROPERTYPUTREF));
            ++checked;
        }
    }
    // PageCounterInfoXml, seven Versions, three Totals twice, three DB members and two.
    CHECK(checked == 1 + 7 + 6 + 3 + 2);
}

TEST_CASE("TypeLibrary_put_parameters_are_stored_without_a_name") {
    const ComPtr<ITypeLib> library = loadLibraryUnderTest();
    CHECK(isInLibrary(*library.Get(), L"StripColor"));
    CHECK_FALSE(isInLibrary(*library.Get(), L"newVal"));
}
