#pragma once

#include <windows.h>

/// True under Wine. Tests ask only where Wine differs from what Windows documents, and then expect the
/// documented behaviour elsewhere.
inline bool RunsUnderWine() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}
