#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <windows.h>

// The Windows headers define this name as a macro.
#undef GetModuleFileName

/// Utilities that need Windows.
namespace QxMisc {

/// Full path of a loaded module. On failure, also for a path longer than 259 characters, empty and logged.
std::wstring GetModuleFileName(HMODULE module);

/// The system's text for an error code: one line, trimmed, every "%" doubled so that it can be part of a
/// format. Empty and logged if the system has none.
std::wstring GetSystemMessage(DWORD code) noexcept;
/// The same after a prefix.
std::wstring GetSystemMessage(std::wstring_view prefix, DWORD code);

/// Logs prefix and GetSystemMessage(code) as a format, so prefix must not contain "%".
void LogSystemError(std::uint32_t category, std::wstring_view prefix, DWORD code) noexcept;

} // namespace QxMisc
