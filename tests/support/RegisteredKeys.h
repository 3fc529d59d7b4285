#pragma once

#include "tests/support/RegistryTree.h"

#include <string>
#include <vector>

// The keys and values that registration must write below HKEY_CLASSES_ROOT, as in a registry with one view.
// The keys of the type library, which the system writes, are not part of them.

inline const std::wstring AppId = L"{184E2C3E-38AA-4CAB-8FF8-B99261F8A0B2}";
inline const std::wstring TypeLibraryId = L"{D47A619E-7CB5-4B98-9A01-93662E11761E}";

struct RegisteredClass {
    const wchar_t* name;
    const wchar_t* classId;
};
/// In registration order.
const std::vector<RegisteredClass>& RegisteredClasses();

void AddAppId(RegistryTree& tree);
void AddClass(RegistryTree& tree, const RegisteredClass& of, const std::wstring& modulePath);
RegistryTree ExpectedKeys(const std::wstring& modulePath);
