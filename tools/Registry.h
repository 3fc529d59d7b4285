#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

// Reading the registry and opening files, for the check of the installation.

struct CloseKernelHandle {
    void operator()(HANDLE handle) const noexcept { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseKernelHandle>;

/// Empty on a failure, with the reason as the last error.
Handle OpenToRead(const std::wstring& path);

bool KeyExists(HKEY root, const std::wstring& key);
bool ValueExists(HKEY root, const std::wstring& key, const wchar_t* name);
/// A text; nothing when it is missing or of another type. A null name is the key's default value.
std::optional<std::wstring> ReadText(HKEY root, const std::wstring& key, const wchar_t* name);
std::optional<DWORD> ReadNumber(HKEY root, const std::wstring& key, const wchar_t* name);
