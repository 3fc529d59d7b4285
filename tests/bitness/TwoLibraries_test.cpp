#include "tests/support/ComClient.h"
#include "tests/support/Library.h"
#include "tests/support/RegisteredKeys.h"

#include <vector>

// The libraries of both bitnesses on one machine, registered and unregistered in every order. Changes the
// machine's registry, so it runs in a Wine prefix of its own.

namespace {

enum class Bits { Of32, Of64 };
constexpr Bits Both[] = {Bits::Of32, Bits::Of64};

Bits Other(Bits bits) {
    return bits == Bits::Of32 ? Bits::Of64 : Bits::Of32;
}

std::wstring ModulePath(Bits bits) {
    wchar_t path[MAX_PATH], full[MAX_PATH];
    const wchar_t* const variable = bits == Bits::Of32 ? L"JOBOBJECTS_LIBRARY_32" : L"JOBOBJECTS_LIBRARY_64";
    REQUIRE(GetEnvironmentVariableW(variable, path, MAX_PATH) != 0);
    REQUIRE(GetFullPathNameW(path, MAX_PATH, full, nullptr) != 0);
    return full;
}

std::wstring SystemProgram(Bits bits, const wchar_t* name) {
    return std::wstring(bits == Bits::Of32 ? L"C:\\windows\\syswow64\\" : L"C:\\windows\\system32\\") + name;
}

DWORD Run(std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    REQUIRE(CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                           &startup, &process));
    CHECK(WaitForSingleObject(process.hProcess, 60'000) == WAIT_OBJECT_0);
    DWORD exitCode = ~0u;
    REQUIRE(GetExitCodeProcess(process.hProcess, &exitCode));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return exitCode;
}

void Register(Bits bits) {
    REQUIRE(Run(SystemProgram(bits, L"regsvr32.exe") + L" /s \"" + ModulePath(bits) + L"\"") == 0);
}

void Unregister(Bits bits) {
    REQUIRE(Run(SystemProgram(bits, L"regsvr32.exe") + L" /u /s \"" + ModulePath(bits) + L"\"") == 0);
}

/// Whether a script host of this bitness can use the records.
bool ScriptWorks(Bits bits) {
    constexpr DWORD works = 7; // the script host itself never returns it
    return Run(SystemProgram(bits, L"cscript.exe") + L" //nologo \"Z:" CREATE_SCRIPT "\"") == works;
}

void AddKey(RegistryTree& tree, const std::wstring& path, REGSAM view, const std::wstring& shownBelow) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ | view, &key) != ERROR_SUCCESS)
        return;
    const std::wstring shown = shownBelow + path;
    tree[shown];
    for (const auto& [name, data] : ReadRegistryTree(key))
        if (name.find(L"HELPDIR") == std::wstring::npos) // the folder of the library registered last
            tree[name.front() == L'|' ? shown + name : shown + L"\\" + name] = data;
    RegCloseKey(key);
}

/// Every key of the libraries. Keys of the 32-bit and 64-bit views have the prefixes "32:" and "64:".
RegistryTree AllKeys() {
    RegistryTree tree;
    AddKey(tree, L"AppID\\" + AppId, 0, L"");
    AddKey(tree, L"AppID\\Tarnwick.DLL", 0, L"");
    AddKey(tree, L"TypeLib\\" + TypeLibraryId, 0, L"");
    for (const RegisteredClass& each : RegisteredClasses()) {
        AddKey(tree, std::wstring(L"Corvane.") + each.name, 0, L"");
        AddKey(tree, std::wstring(L"Corvane.") + each.name + L".1", 0, L"");
        AddKey(tree, std::wstring(L"CLSID\\") + each.classId, KEY_WOW64_32KEY, L"32:");
        AddKey(tree, std::wstring(L"CLSID\\") + each.classId, KEY_WOW64_64KEY, L"64:");
    }
    for (const LibraryClass& each : LibraryClasses()) {
        wchar_t id[39];
        REQUIRE(StringFromGUID2(each.interfaceId, id, 39) == 39);
        AddKey(tree, std::wstring(L"Interface\\") + id, KEY_WOW64_32KEY, L"32:");
        AddKey(tree, std::wstring(L"Interface\\") + id, KEY_WOW64_64KEY, L"64:");
    }
    return tree;
}

/// The keys that registration of the libraries must write, without those that the system writes for the type
/// library.
RegistryTree ExpectedKeysOf(const std::vector<Bits>& libraries) {
    RegistryTree expected;
    for (const Bits bits : libraries)
        for (const auto& [key, data] : ExpectedKeys(ModulePath(bits))) {
            if (key.rfind(L"CLSID\\", 0) == 0)
                expected[(bits == Bits::Of32 ? L"32:" : L"64:") + key] = data;
            else if (key != L"CLSID" && key != L"AppID")
                expected[key] = data;
        }
    return expected;
}

bool IsOfTypeLibrary(const std::wstring& key) {
    return key.rfind(L"TypeLib", 0) == 0 || key.find(L":Interface") != std::wstring::npos;
}

RegistryTree OwnKeys() {
    RegistryTree own;
    for (const auto& [key, data] : AllKeys())
        if (!IsOfTypeLibrary(key))
            own[key] = data;
    return own;
}

void CheckTypeLibrary(const RegistryTree& tree, Bits bits, bool registered) {
    const std::wstring key =
        L"TypeLib\\" + TypeLibraryId + L"\\1.0\\409\\" + (bits == Bits::Of32 ? L"win32|" : L"win64|");
    REQUIRE((tree.count(key) == 1) == registered);
    if (registered)
        CHECK_TEXT(tree.at(key), ModulePath(bits) + L"\\1");
}

/// The registry with one library, taken before the other is registered for the first time.
RegistryTree KeysOfOneAlone(Bits bits) {
    Register(bits);
    RegistryTree tree = AllKeys();
    Unregister(bits);
    CHECK_KEYS(AllKeys(), RegistryTree());
    return tree;
}

} // namespace

TEST_CASE("One_library_alone_writes_its_own_view_and_the_shared_keys") {
    for (const Bits bits : Both) {
        INFO(static_cast<int>(bits));
        Register(bits);
        CHECK_KEYS(OwnKeys(), ExpectedKeysOf({bits}));
        CheckTypeLibrary(AllKeys(), bits, true);
        CheckTypeLibrary(AllKeys(), Other(bits), false);
        CHECK(ScriptWorks(bits));
        Unregister(bits);
        CHECK_KEYS(AllKeys(), RegistryTree());
        CHECK_FALSE(ScriptWorks(bits));
    }
}

TEST_CASE("Two_libraries_registered_in_either_order_write_the_same_keys") {
    RegistryTree first;
    for (const Bits bits : Both) {
        Register(bits);
        Register(Other(bits));
        CHECK_KEYS(OwnKeys(), ExpectedKeysOf({Bits::Of32, Bits::Of64}));
        CheckTypeLibrary(AllKeys(), Bits::Of32, true);
        CheckTypeLibrary(AllKeys(), Bits::Of64, true);
        if (first.empty())
            first = AllKeys();
        CHECK_KEYS(AllKeys(), first);
        CHECK(ScriptWorks(Bits::Of32));
        CHECK(ScriptWorks(Bits::Of64));
        Unregister(bits);
        Unregister(Other(bits));
        CHECK_KEYS(AllKeys(), RegistryTree());
    }
}

TEST_CASE("Two_libraries_registered_again_keep_their_keys") {
    Register(Bits::Of32);
    Register(Bits::Of64);
    const RegistryTree tree = AllKeys();
    for (const Bits bits : Both) {
        Register(bits);
        CHECK_KEYS(AllKeys(), tree);
    }
    Unregister(Bits::Of64);
    Unregister(Bits::Of32);
    CHECK_KEYS(AllKeys(), RegistryTree());
}

TEST_CASE("Unregistration_of_one_library_leaves_the_keys_of_the_other_alone") {
    for (const Bits removed : Both) {
        const Bits kept = Other(removed);
        INFO(static_cast<int>(removed));
        const RegistryTree alone = KeysOfOneAlone(kept);
        for (const Bits first : Both) {
            Register(first);
            Register(Other(first));
            Unregister(removed);
            CHECK_KEYS(AllKeys(), alone);
            CHECK(ScriptWorks(kept));
            Unregister(removed); // finds nothing
            CHECK_KEYS(AllKeys(), alone);
            Unregister(kept);
            CHECK_KEYS(AllKeys(), RegistryTree());
        }
    }
}
