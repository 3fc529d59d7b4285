#include "tests/support/ComClient.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/Library.h"
#include "tests/support/RegisteredKeys.h"
#include "tests/support/RegistryTree.h"

// Registration, key by key, in a private classes root.

namespace {

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
        REQUIRE(Foreign != GetSystemDefaultLCID());
        REQUIRE(SetThreadLocale(Foreign) != 0);
    }
    ForeignLocale(const ForeignLocale&) = delete;
    ForeignLocale& operator=(const ForeignLocale&) = delete;
    ~ForeignLocale() { SetThreadLocale(m_before); }

    bool IsKept() const { return GetThreadLocale() == Foreign; }

private:
    static constexpr LCID Foreign = 0x0407; // German
    LCID m_before;
};

HRESULT WINAPI LookUpFails(REFGUID, WORD, WORD, LCID, LPBSTR) {
    return TYPE_E_REGISTRYACCESS;
}

LCID usedLocale = 0;

HRESULT WINAPI NoteLocale(ITypeLib*, LPOLESTR, LPOLESTR) {
    usedLocale = GetThreadLocale();
    return S_OK;
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
    const std::wstring version = L"TypeLib\\" + TypeLibraryId + L"\\1.0";
    REQUIRE(tree.count(version + L"|") == 1);
    CHECK_TEXT(tree.at(version + L"|"), L"Corvane OutputManagement JobObjects 1.0 Type Library");
    const std::wstring path = version + (sizeof(void*) == 8 ? L"\\409\\win64|" : L"\\409\\win32|");
    REQUIRE(tree.count(path) == 1);
    CHECK_TEXT(tree.at(path), ModulePath(library) + L"\\1");
    UniqueBstr found;
    const GUID id = {0xD47A619E, 0x7CB5, 0x4B98, {0x9A, 0x01, 0x93, 0x66, 0x2E, 0x11, 0x76, 0x1E}};
    CHECK_HR(QueryPathOfRegTypeLib(id, 1, 0, 0x0409, found.Put()), S_OK);
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
    for (const RegisteredClass& each : RegisteredClasses()) {
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
    CHECK_FALSE(RegistryKeyExists(root.Key(), L"TypeLib\\" + TypeLibraryId));
    for (const LibraryClass& each : LibraryClasses()) {
        wchar_t interfaceId[39];
        REQUIRE(StringFromGUID2(each.interfaceId, interfaceId, 39) == 39);
        INFO(each.name);
        CHECK_FALSE(RegistryKeyExists(root.Key(), std::wstring(L"Interface\\") + interfaceId));
    }
}

TEST_CASE("Unregistration_removes_keys_with_all_subkeys_and_values") {
    const Library library;
    const PrivateClassesRoot root;
    REQUIRE_HR(library.RegisterServer(), S_OK);
    for (const RegisteredClass& each : RegisteredClasses()) {
        SetRegistryText(root.Key(), std::wstring(L"CLSID\\") + each.classId + L"\\Added\\Below", nullptr,
                        L"x");
        SetRegistryText(root.Key(), std::wstring(L"Corvane.") + each.name + L"\\Added", nullptr, L"x");
    }
    REQUIRE_HR(library.UnregisterServer(), S_OK);
    const RegistryTree rootKeys = {{L"AppID", L""}, {L"CLSID", L""}};
    CHECK_KEYS(OwnKeys(root), rootKeys);
}

TEST_CASE("Unregistration_without_registration_succeeds") {
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
    CHECK(RegistryKeyExists(root.Key(), L"TypeLib\\" + TypeLibraryId));
    CHECK_HR(library.UnregisterServer(), S_OK);
    CHECK_FALSE(RegistryKeyExists(root.Key(), L"TypeLib\\" + TypeLibraryId));
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
    AddClass(expected, RegisteredClasses().front(), ModulePath(library));
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

TEST_CASE("Registration_uses_the_locale_of_the_system") {
    const Library library;
    const PrivateClassesRoot root;
    const ForeignLocale locale;
    const ImportPatch patch(library.Module(), "RegisterTypeLib", reinterpret_cast<void*>(NoteLocale));
    REQUIRE_HR(library.RegisterServer(), S_OK);
    CHECK(usedLocale == GetSystemDefaultLCID());
}
