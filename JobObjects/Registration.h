#pragma once

#include <windows.h>

/// Registers the AppID, the ten classes and the type library. Stops at the first failure and returns its
/// HRESULT.
HRESULT RegisterLibrary() noexcept;

/// Removes what RegisterLibrary writes, except the roots "AppID" and "CLSID". Missing keys are not an error.
HRESULT UnregisterLibrary() noexcept;
