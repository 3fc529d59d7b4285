#include "tests/support/ComClient.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/Library.h"
#include "tests/support/RegistryTree.h"

// Registration, key by key, in a private classes root.

namespace {

const std::wstring appId = L"{184E2C3E-38AA-4CAB-8FF8-B99261F8A0B2}";
const std::wstring typeLibrary = L"{D47A619E-7CB5-4B98-9A01-93662E11761E}";

struct RegisteredClass {
    const wchar_t* name;
    const wchar_t* classId;
};
/// In registration order.
const RegisteredClass registeredClasses[] = {
    {L"CopyJob", L"{D0166F63-1697-4253-80C7-46CC2F5C08AE}"},
    {L"CopyLine", L"{B277E8AC-06C2-4643-A78C-34A04147E8D5}"},
    {L"CopyLines", L"{409471F5-F3EC-4A82-8E28-D87B45E713CF}"},
    {L"FaxJob", L"{75700FBE-59DA-49D0-BBCF-05F57D6313EA}"},
    {L"JobContents", L"{C9C5F25D-4220-4ED0-813F-A3AACCA825C6}"},
    {L"LogicalPrinter", L"{572F1D05-1E2D-49F9-AD75-58D16DA32DEC}"},
    {L"PolicyResults", L"{B3355079-0AAB-4683-8EE5-E22DC82B9500}"},
    {L"PrintJob", L"{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}"},
    {L"ScanJob", L"{D970D128-65FA-4574-9A89-07A680126CBE}"},
    {L"WindowsPrintInfo", L"{19CA5C2A-D9EF-42D3-B393-F234BE10FCFA}"},
};

void AddAppId(RegistryTree& tree) {
    tree[L"AppID"];
    tree[L"AppID\\" + appId];
    tree[L"AppID\\" + appId + L"|"] = L"JobObjects";
    tree[L"AppID\\" + appId + L"|DllSurrogate"] = L"";
    tree[L"AppID\\Tarnwick.DLL"];
    tree[L"AppID\\Tarnwick.DLL|AppID"] = appId;
}

void AddClass(RegistryTree& tree, const RegisteredClass& of, const std::wstring& modulePath) {
    const std::wstring description = std::wstring(of.name) + L" Class";
    const std::wstring progId = std::wstring(L"Corvane.") + of.name;
    tree[progId + L".1"];
    tree[progId + L".1|"] = description;
    tree[progId + L".1\\CLSID"];
    tree[progId + L".1\\CLSID|"] = of.classId;
    tree[progId];
    tree[progId + L"|"] = description;
    tree[progId + L"\\CLSID"];
    tree[progId + L"\\CLSID|"] = of.classId;
    tree[progId + L"\\CurVer"];
    tree[progId + L"\\CurVer|"] = progId + L".1";
    const std::wstring key = std::wstring(L"CLSID\\") + of.classId;
    tree[L"CLSID"];
    tree[key];
    tree[key + L"|"] = description;
    tree[key + L"|AppID"] = appId;
    tree[key + L"\\ProgID"];
    tree[key + L"\\ProgID|"] = progId + L".1";
    tree[key + L"\\VersionIndependentProgID"];
    tree[key + L"\\VersionIndependentProgID|"] = progId;
    tree[key + L"\\Programmable"];
    tree[key + L"\\InprocServer32"];
    tree[key + L"\\InprocServer32|"] = modulePath;
    tree[key + L"\\InprocServer32|ThreadingModel"] = L"Apartment";
    tree[key + L"\\TypeLib"];
    tree[key + L"\\TypeLib|"] = typeLibrary;
}

RegistryTree ExpectedKeys(const std::wstring& modulePath) {
    RegistryTree tree;
    AddAppId(tree);
    for (const RegisteredClass& each : registeredClasses)
        AddClass(tree, each, modulePath);
    return tree;
}

/// The keys that the system writes for a type library, below "TypeLib" and "Interface".
bool IsOfTypeLibrary(const std::wstring& key) {
    const std::wstring first = key.substr(0, key.find_first_of(L"\\|"));
    const RegistryTree systemKeys = {{L"TypeLib", L""}, {L"Interface", L""}};
    return systemKeys.count(first) == 1;
}

/// The keys that the library writes.
RegistryTree OwnKeys(const PrivateClassesRoot& root) {
    RegistryTree own;
    for (const auto& [key, data] : ReadRegistryTree(root.Key()))
        if (!IsOfTypeLibrary(key))
            own[key] = data;
    return own;
}

std::wstring ModulePath(const Library& library) {
    wchar_t path[MAX_PATH];
    REQUIRE(GetModuleFileNameW(library.Module(), path, MAX_PATH) != 0);
    return path;
}

/// Sets the thread's locale to one that differs from the system's, and checks that it stays set.
class ForeignLocale {
public:
    ForeignLocale() : m_before(GetThreadLocale()) {
        REQUIRE(foreign != GetSystemDefaultLCID());
        REQUIRE(SetThreadLocale(foreign) != 0);
    }
    ForeignLocale(const ForeignLocale&) = delete;
    ForeignLocale& operator=(const ForeignLocale&) = delete;
    ~ForeignLocale() { SetThreadLocale(m_before); }

    bool IsKept() const { return GetThreadLocale() == foreign; }

private:
    static constexpr LCID foreign = 0x0407; // German
    LCID m_before;
};

HRESULT WINAPI LookUpFails(REFGUID, WORD, WORD, LCID, LPBSTR) {
    return TYPE_E_REGISTRYACCESS;
}

} // namespace

TEST_CASE("Registration_writes_every_key_and_no_other") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    CHECK_KEYS(OwnKeys(root), ExpectedKeys(ModulePath(library)));
}

TEST_CASE("Registration_writes_the_type_library_from_the_library_itself") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    const RegistryTree tree = ReadRegistryTree(root.Key());
    const std::wstring version = L"TypeLib\\" + typeLibrary + L"\\1.0";
    REQUIRE(tree.count(version + L"|") == 1);
    CHECK_TEXT(tree.at(version + L"|"), L"Corvane OutputManagement JobObjects 1.0 Type Library");
    REQUIRE(tree.count(version + L"\\409\\win32|") == 1);
    CHECK_TEXT(tree.at(version + L"\\409\\win32|"), ModulePath(library) + L"\\1");
    UniqueBstr path;
    const GUID id = {0xD47A619E, 0x7CB5, 0x4B98, {0x9A, 0x01, 0x93, 0x66, 0x2E, 0x11, 0x76, 0x1E}};
    CHECK_HR(QueryPathOfRegTypeLib(id, 1, 0, 0x0409, path.Put()), S_OK);
}

TEST_CASE("Registration_run_twice_leaves_one_set_of_keys") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    const RegistryTree once = ReadRegistryTree(root.Key());
    REQUIRE_HR(library.RegisterServer(), S_OK);
    CHECK_KEYS(ReadRegistryTree(root.Key()), once);
    CHECK_KEYS(OwnKeys(root), ExpectedKeys(ModulePath(library)));
}

TEST_CASE("Registration_removes_old_keys_below_the_class_keys") {
    const Library library;
    const PrivateClassesRoot root;
    for (const RegisteredClass& each : registeredClasses) {
        const std::wstring key = std::wstring(L"CLSID\\") + each.classId;
        SetRegistryText(root.Key(), key + L"\\Programmable\\Stale\\Deeper", L"Value", L"old");
        SetRegistryText(root.Key(), key + L"\\Implemented Categories\\Stale", nullptr, L"old");
        SetRegistryText(root.Key(), key + L"\\InprocServer32", L"ThreadingModel", L"Free");
        SetRegistryText(root.Key(), key + L"\\InprocServer32", L"Stale", L"old");
        SetRegistryText(root.Key(), key, L"Stale", L"old");
    }
    REQUIRE_HR(library.RegisterServer(), S_OK);
    CHECK_KEYS(OwnKeys(root), ExpectedKeys(ModulePath(library)));
}

TEST_CASE("Registration_leaves_the_keys_of_other_programs_alone") {
    const Library library;
    const PrivateClassesRoot root;
    SetRegistryText(root.Key(), L"CLSID\\{00000000-1111-2222-3333-444444444444}", nullptr, L"Another Class");
    SetRegistryText(root.Key(), L"AppID\\Another.DLL", L"AppID", L"{00000000-1111-2222-3333-444444444445}");
    SetRegistryText(root.Key(), L"Corvane.Another", nullptr, L"Another Class");
    const RegistryTree others = ReadRegistryTree(root.Key());
    REQUIRE_HR(library.RegisterServer(), S_OK);
    const RegistryTree registered = ReadRegistryTree(root.Key());
    for (const auto& [key, data] : others) {
        INFO(Narrow(key));
        REQUIRE(registered.count(key) == 1);
        CHECK_TEXT(registered.at(key), data);
    }
    REQUIRE_HR(library.UnregisterServer(), S_OK);
    CHECK_KEYS(OwnKeys(root), others);
}

TEST_CASE("Unregistration_removes_all_but_the_root_keys") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    REQUIRE_HR(library.UnregisterServer(), S_OK);
    const RegistryTree rootKeys = {{L"AppID", L""}, {L"CLSID", L""}};
    CHECK_KEYS(OwnKeys(root), rootKeys);
    CHECK_FALSE(RegistryKeyExists(root.Key(), L"TypeLib\\" + typeLibrary));
    for (const LibraryClass& each : LibraryClasses()) {
        wchar_t interfaceId[39];
        REQUIRE(StringFromGUID2(each.interfaceId, interfaceId, 39) == 39);
        INFO(each.name);
        CHECK_FALSE(RegistryKeyExists(root.Key(), std::wstring(L"Interface\\") + interfaceId));
    }
}

TEST_CASE("Unregistration_removes_keys_with_whatever_is_below_them") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    for (const RegisteredClass& each : registeredClasses) {
        SetRegistryText(root.Key(), std::wstring(L"CLSID\\") + each.classId + L"\\Added\\Below", nullptr,
                        L"x");
        SetRegistryText(root.Key(), std::wstring(L"Corvane.") + each.name + L"\\Added", nullptr, L"x");
    }
    REQUIRE_HR(library.UnregisterServer(), S_OK);
    const RegistryTree rootKeys = {{L"AppID", L""}, {L"CLSID", L""}};
    CHECK_KEYS(OwnKeys(root), rootKeys);
}

TEST_CASE("Unregistration_of_what_is_not_registered_succeeds") {
    const Library library;
    const PrivateClassesRoot root;
    CHECK_HR(library.UnregisterServer(), S_OK);
    CHECK_KEYS(ReadRegistryTree(root.Key()), RegistryTree());
}

TEST_CASE("Unregistration_reports_a_type_library_that_cannot_be_looked_up") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    {
        const ImportPatch patch(library.Module(), "QueryPathOfRegTypeLib",
                                reinterpret_cast<void*>(LookUpFails));
        CHECK_HR(library.UnregisterServer(), TYPE_E_REGISTRYACCESS);
    }
    CHECK(RegistryKeyExists(root.Key(), L"TypeLib\\" + typeLibrary));
    CHECK_HR(library.UnregisterServer(), S_OK);
    CHECK_FALSE(RegistryKeyExists(root.Key(), L"TypeLib\\" + typeLibrary));
}

TEST_CASE("Registration_stops_at_the_first_write_that_fails") {
    const Library library;
    const PrivateClassesRoot root;
    // A volatile key accepts values but no non-volatile subkey.
    CreateRegistryKey(root.Key(), L"Corvane.CopyLine.1", REG_OPTION_VOLATILE);
    const ForeignLocale locale;
    CHECK_HR(library.RegisterServer(), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    CHECK(locale.IsKept());

    RegistryTree expected;
    AddAppId(expected);
    AddClass(expected, registeredClasses[0], ModulePath(library));
    expected[L"Corvane.CopyLine.1"];
    expected[L"Corvane.CopyLine.1|"] = L"CopyLine Class";
    CHECK_KEYS(ReadRegistryTree(root.Key()), expected); // neither later classes nor the type library
}

TEST_CASE("Registration_without_a_classes_root_fails") {
    const Library library;
    PrivateClassesRoot root;
    root.Remove();
    const ForeignLocale locale;
    CHECK_HR(library.RegisterServer(), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
    CHECK(locale.IsKept());
}

TEST_CASE("Unregistration_without_a_classes_root_fails") {
    const Library library;
    PrivateClassesRoot root;
    root.Remove();
    const ForeignLocale locale;
    CHECK_HR(library.UnregisterServer(), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
    CHECK(locale.IsKept());
}

TEST_CASE("Registration_and_unregistration_restore_the_locale_of_the_thread") {
    const Library library;
    const PrivateClassesRoot root;
    const ForeignLocale locale;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    CHECK(locale.IsKept());
    REQUIRE_HR(library.UnregisterServer(), S_OK);
    CHECK(locale.IsKept());
}
