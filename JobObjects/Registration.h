#pragma once

#include <windows.h>

/// Writes all keys that make the library findable: the AppID, the ten classes and the type library. Stops at
/// the first step that fails and returns its HRESULT.
HRESULT RegisterLibrary() noexcept;

/// Removes what RegisterLibrary writes; the roots "AppID" and "CLSID" stay. What is missing is no failure.
HRESULT UnregisterLibrary() noexcept;
