#pragma once

#include <string>

#include <windows.h>

enum class SystemTextLines { AsStored, One };

/// The system's text for an error code, untrimmed. Empty on failure, with the last error set. Throws
/// std::bad_alloc.
std::wstring SystemText(DWORD code, DWORD language, SystemTextLines lines);
