#pragma once

#include <windows.h>

#include <map>
#include <string>

/// The keys and values below a registry key, for comparison: "key" for each key, and "key|value name" with
/// its data for each value; "key|" is the default value. Names are case-insensitive.
struct RegistryNameLess {
    bool operator()(const std::wstring& left, const std::wstring& right) const;
};
using RegistryTree = std::map<std::wstring, std::wstring, RegistryNameLess>;

/// Reads the tree below a key; data other than texts is shown as "type n".
RegistryTree ReadRegistryTree(HKEY root);
/// The differences as lines "missing: ...", "unexpected: ..." and "differs: ..."; empty if there are none.
std::string Difference(const RegistryTree& actual, const RegistryTree& expected);
#define CHECK_KEYS(actual, expected) CHECK(Difference(actual, expected) == "")

bool RegistryKeyExists(HKEY root, const std::wstring& path);
/// Creates a key and its parents, with the options of RegCreateKeyEx.
void CreateRegistryKey(HKEY root, const std::wstring& path, DWORD options = REG_OPTION_NON_VOLATILE);
void SetRegistryText(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& text);

/// Overrides HKEY_CLASSES_ROOT of this process with an empty key, so that tests can register and unregister
/// without affecting other programs.
class PrivateClassesRoot {
public:
    PrivateClassesRoot();
    PrivateClassesRoot(const PrivateClassesRoot&) = delete;
    PrivateClassesRoot& operator=(const PrivateClassesRoot&) = delete;
    ~PrivateClassesRoot();

    HKEY Key() const { return m_key; }
    /// Removes the key itself: every later access to HKEY_CLASSES_ROOT fails.
    void Remove();

private:
    HKEY m_key = nullptr;
};
