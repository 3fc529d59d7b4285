#pragma once

#include <string>

#include <windows.h>

enum class SystemTextLines { AsStored, One };

/// The system's text for an error code, untrimmed. Empty if the system has none; the reason is then the last
/// error. Throws std::bad_alloc.
std::wstring SystemText(DWORD code, DWORD language, SystemTextLines lines);
