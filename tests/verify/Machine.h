#pragma once

#include <string>
#include <vector>

#include <windows.h>

// What the kit needs to know about the machine. The kit's program has 32 bits.

struct Platform {
    const char* name; ///< and folder
    REGSAM view;      ///< of the registry
    std::wstring systemFolder;
};

/// "Windows 10 Pro, version 10.0.19045.2006"
std::string SystemName();
bool Is64BitWindows();
bool IsAdministrator();

/// The platforms whose programs run here.
std::vector<Platform> Platforms();

/// The library registered in this view; empty if none is.
std::wstring RegisteredLibrary(const Platform& platform);

/// Whether the machine has a script engine: "VBScript" is optional in new versions of Windows.
bool HasScriptEngine(const Platform& platform, const wchar_t* name);

/// Keys of the product and of its tests in the registry, as far as they exist, in all views.
std::vector<std::string> OwnKeys();
