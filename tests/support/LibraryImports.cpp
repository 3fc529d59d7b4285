#include "tests/support/LibraryImports.h"

#include <cstdio>
#include <cwchar>

namespace {

// No header declares these; see LdrRegisterDllNotification in the Windows documentation.
struct LoaderText {
    USHORT length;
    USHORT capacity;
    const wchar_t* characters;
};
struct LoaderData {
    ULONG flags;
    const LoaderText* fullName;
    const LoaderText* baseName;
    void* base;
    ULONG size;
};
using Redirect = void (*)(HMODULE);

void CALLBACK AtLoaderEvent(ULONG reason, const LoaderData* data, void* redirect) {
    constexpr ULONG loaded = 1;
    constexpr wchar_t library[] = L"Tarnwick.dll";
    const std::size_t length = data->baseName->length / sizeof(wchar_t);
    if (reason == loaded && length == std::wcslen(library) &&
        _wcsnicmp(data->baseName->characters, library, length) == 0)
        reinterpret_cast<Redirect>(redirect)(static_cast<HMODULE>(data->base));
}

} // namespace

void AtEachLibraryLoad(Redirect redirect) {
    using Register = LONG(NTAPI*)(ULONG, decltype(&AtLoaderEvent), void*, void**);
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "LdrRegisterDllNotification");
    void* cookie = nullptr;
    if (!address || reinterpret_cast<Register>(reinterpret_cast<void*>(address))(
                        0, AtLoaderEvent, reinterpret_cast<void*>(redirect), &cookie) != 0) {
        std::fprintf(stderr, "cannot register for DLL load notifications\n");
        ExitProcess(251);
    }
}
