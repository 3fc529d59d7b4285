#pragma once

#include <windows.h>

#include <optional>
#include <string>

// `view` is KEY_WOW64_32KEY or KEY_WOW64_64KEY for the registry of programs of that bitness, or 0 for the
// tool's own.

bool KeyExists(HKEY root, const std::wstring& key, REGSAM view = 0);
bool ValueExists(HKEY root, const std::wstring& key, const wchar_t* name);
/// A text value; nothing if it is missing or of another type. A null name means the key's default value.
std::optional<std::wstring> ReadText(HKEY root, const std::wstring& key, const wchar_t* name,
                                     REGSAM view = 0);
std::optional<DWORD> ReadNumber(HKEY root, const std::wstring& key, const wchar_t* name);
