#pragma once

#include <string_view>

#include <windows.h>

/// Configures the log from the values of the key "Log" below baseKey, and replaces or removes its sinks to
/// match, in one change. Changes nothing if the key cannot be opened; a missing value leaves its setting, a
/// missing value of a sink removes the sink. A source name replaces the one in the registry.
void ConfigureLog(const wchar_t* baseKey, HKEY rootKey, REGSAM access,
                  std::wstring_view sourceName = {}) noexcept;
