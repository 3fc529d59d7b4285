#pragma once

#include <string>

// Where the library is registered.

/// The class identifier that the class is registered with, as text; empty when there is none.
std::wstring ClassIdText(const std::wstring& className);
/// The key of the file that makes the class, below HKEY_CLASSES_ROOT.
std::wstring ServerKey(const std::wstring& classId);
/// The file that the class is registered with; empty when it is not registered.
std::wstring RegisteredModule(const std::wstring& className);
/// The catalogue beside a module.
std::wstring CatalogueBeside(const std::wstring& module);
