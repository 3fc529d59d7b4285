#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <windows.h>

// In Unicode builds this name is a macro of the Windows headers; code that means the system's function calls
// GetModuleFileNameW.
#undef GetModuleFileName

/// The part of the text utilities that asks Windows.
namespace QxMisc {

/// Full path of a loaded module. Empty, with a log line, on a failure; a path that does not fit into 260
/// characters is one.
std::wstring GetModuleFileName(HMODULE module);

/// The system's text for an error code, on one line, trimmed and with every "%" doubled, so that it can go
/// through a format call. Empty, with a log line, when the system has none.
std::wstring GetSystemMessage(DWORD code) noexcept;
/// prefix followed by GetSystemMessage(code).
std::wstring GetSystemMessage(std::wstring_view prefix, DWORD code);

/// Logs prefix and GetSystemMessage(code). The prefix goes through a format call and so holds no "%".
void LogSystemError(std::uint32_t category, std::wstring_view prefix, DWORD code) noexcept;

} // namespace QxMisc
