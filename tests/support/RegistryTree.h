#pragma once

#include <windows.h>

#include <map>
#include <string>

/// The keys and values below one registry key, for comparison: "key" for each key and "key|value name" with
/// its data for each value, "key|" being the default value. Names compare without regard to letter case.
struct RegistryNameLess {
    bool operator()(const std::wstring& left, const std::wstring& right) const;
};
using RegistryTree = std::map<std::wstring, std::wstring, RegistryNameLess>;

/// Reads the tree below a key; data other than texts is shown as "type n".
RegistryTree ReadRegistryTree(HKEY root);
/// What distinguishes two trees, as lines "missing: ...", "unexpected: ..." and "differs: ..."; empty if
/// nothing does.
std::string Difference(const RegistryTree& actual, const RegistryTree& expected);
#define CHECK_KEYS(actual, expected) CHECK(Difference(actual, expected) == "")

bool RegistryKeyExists(HKEY root, const std::wstring& path);
/// Creates a key with everything above it; the options are those of RegCreateKeyEx.
void CreateRegistryKey(HKEY root, const std::wstring& path, DWORD options = REG_OPTION_NON_VOLATILE);
void SetRegistryText(HKEY root, const std::wstring& path, const wchar_t* name, const std::wstring& text);

/// Makes this process see an empty key of the test's own in place of HKEY_CLASSES_ROOT, so that a test can
/// register and unregister without touching what other programs rely on.
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
