#include "ShortClient.h"

#include <windows.h>

// A plug-in that brings the shared runtime of its compiler into a host without one.

extern "C" __declspec(dllexport) void PluginThrows() {
    ThrowAndCatch();
}

extern "C" __declspec(dllexport) void PluginUsesLibrary(const wchar_t* path) {
    UseLibrary(path);
}
