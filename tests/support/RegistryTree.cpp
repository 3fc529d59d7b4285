#include "tests/support/RegistryTree.h"

#include "tests/support/ComClient.h"

namespace {

/// Private to this process, because tests run in parallel.
const std::wstring PrivateRoot = L"Software\\JobObjectsTestClasses" + std::to_wstring(GetCurrentProcessId());

void ReadValues(HKEY key, const std::wstring& path, RegistryTree& tree) {
    for (DWORD index = 0;; ++index) {
        wchar_t name[256];
        BYTE data[2048];
        DWORD nameLength = static_cast<DWORD>(std::size(name)), size = sizeof(data), type = 0;
        const LSTATUS status = RegEnumValueW(key, index, name, &nameLength, nullptr, &type, data, &size);
        if (status == ERROR_NO_MORE_ITEMS)
            return;
        REQUIRE(status == ERROR_SUCCESS);
        std::wstring text = L"type " + std::to_wstring(type);
        if (type == REG_SZ)
            text.assign(reinterpret_cast<const wchar_t*>(data), size / sizeof(wchar_t) - 1);
        tree[path + L"|" + name] = text;
    }
}

void ReadKeys(HKEY key, const std::wstring& path, RegistryTree& tree) {
    ReadValues(key, path, tree);
    for (DWORD index = 0;; ++index) {
        wchar_t name[256];
        auto length = static_cast<DWORD>(std::size(name));
        const LSTATUS status = RegEnumKeyExW(key, index, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_NO_MORE_ITEMS)
            return;
        REQUIRE(status == ERROR_SUCCESS);
        HKEY child = nullptr;
        REQUIRE(RegOpenKeyExW(key, name, 0, KEY_READ, &child) == ERROR_SUCCESS);
        const std::wstring childPath = path.empty() ? name : path + L"\\" + name;
        tree[childPath] = L"";
        ReadKeys(child, childPath, tree);
        RegCloseKey(child);
    }
}

} // namespace

bool RegistryNameLess::operator()(const std::wstring& left, const std::wstring& right) const {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_LESS_THAN;
}

RegistryTree ReadRegistryTree(HKEY root) {
    RegistryTree tree;
    ReadKeys(root, L"", tree);
    return tree;
}

std::string Difference(const RegistryTree& actual, const RegistryTree& expected) {
    std::string text;
    for (const auto& [key, data] : expected) {
        const auto found = actual.find(key);
        if (found == actual.end())
            text += "missing: " + Narrow(key) + " = " + Narrow(data) + "\n";
        else if (found->second != data)
            text +=
                "differs: " + Narrow(key) + " = " + Narrow(found->second) + ", not " + Narrow(data) + "\n";
    }
    for (const auto& [key, data] : actual)
        if (!expected.contains(key))
            text += "unexpected: " + Narrow(key) + " = " + Narrow(data) + "\n";
    return text;
}

bool RegistryKeyExists(HKEY root, const std::wstring& path) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

void CreateRegistryKey(HKEY root, const std::wstring& path, DWORD options) {
    HKEY key = nullptr;
    REQUIRE(RegCreateKeyExW(root, path.c_str(), 0, nullptr, options, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr) == ERROR_SUCCESS);
    RegCloseKey(key);
}

void SetRegistryText(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& text) {
    CreateRegistryKey(root, path);
    REQUIRE(RegSetKeyValueW(root, path.c_str(), name, REG_SZ, text.c_str(),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))) == ERROR_SUCCESS);
}

PrivateClassesRoot::PrivateClassesRoot() {
    RegDeleteTreeW(HKEY_CURRENT_USER, PrivateRoot.c_str()); // left by an interrupted run
    REQUIRE(RegCreateKeyExW(HKEY_CURRENT_USER, PrivateRoot.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                            &m_key, nullptr) == ERROR_SUCCESS);
    REQUIRE(RegOverridePredefKey(HKEY_CLASSES_ROOT, m_key) == ERROR_SUCCESS);
    REQUIRE_FALSE(RegistryKeyExists(HKEY_CLASSES_ROOT, L"CLSID")); // the override is active
}

PrivateClassesRoot::~PrivateClassesRoot() {
    RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
    RegCloseKey(m_key);
    RegDeleteTreeW(HKEY_CURRENT_USER, PrivateRoot.c_str());
}

void PrivateClassesRoot::Remove() {
    REQUIRE(RegDeleteTreeW(HKEY_CURRENT_USER, PrivateRoot.c_str()) == ERROR_SUCCESS);
}
