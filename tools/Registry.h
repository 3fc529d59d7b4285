#pragma once

#include <windows.h>

#include <optional>
#include <string>

bool KeyExists(HKEY root, const std::wstring& key);
bool ValueExists(HKEY root, const std::wstring& key, const wchar_t* name);
/// A text value; nothing if it is missing or of another type. A null name means the key's default value.
std::optional<std::wstring> ReadText(HKEY root, const std::wstring& key, const wchar_t* name);
std::optional<DWORD> ReadNumber(HKEY root, const std::wstring& key, const wchar_t* name);
