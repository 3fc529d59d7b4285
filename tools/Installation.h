#pragma once

#include <string>

/// The CLSID of a class, as text; empty if it is not registered.
std::wstring ClassIdText(const std::wstring& className);
/// The InprocServer32 key of a class, below HKEY_CLASSES_ROOT.
std::wstring ServerKey(const std::wstring& classId);
/// The path of the file that implements a class; empty if it is not registered.
std::wstring RegisteredModule(const std::wstring& className);
/// The path of the catalogue beside a module.
std::wstring CatalogueBeside(const std::wstring& module);
