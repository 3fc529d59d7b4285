#pragma once

#include <string_view>

#include <windows.h>

/// Configures the log and its sinks from the key "Log" below baseKey, in one change. Changes nothing if the
/// key cannot be opened. A missing value leaves its setting unchanged, but removes the sink if it configures
/// one. A non-empty sourceName overrides the registry.
void ConfigureLog(const wchar_t* baseKey, HKEY rootKey, REGSAM access,
                  std::wstring_view sourceName = {}) noexcept;
