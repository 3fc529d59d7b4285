#include "ShortClient.h"

#include <windows.h>

// A plug-in that loads its compiler's shared runtime into a host with a static one.

extern "C" __declspec(dllexport) void PluginThrows() {
    ThrowAndCatch();
}

extern "C" __declspec(dllexport) void PluginUsesLibrary(const wchar_t* path) {
    UseLibrary(path);
}
