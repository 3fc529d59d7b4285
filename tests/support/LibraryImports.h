#pragma once

#include <windows.h>

// The imported functions of a loaded module, which tests replace.

/// Calls visit(name, slot) for each entry of a module's import table.
template<class Visitor>
void ForEachImport(HMODULE module, Visitor visit) {
    auto* const base = reinterpret_cast<BYTE*>(module);
    const auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    auto* from = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
    for (; from->Name; ++from) {
        auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + from->OriginalFirstThunk);
        auto* slot = reinterpret_cast<void**>(base + from->FirstThunk);
        for (; name->u1.AddressOfData; ++name, ++slot) {
            const auto* entry = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
            visit(IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal) ? "an ordinal"
                                                          : reinterpret_cast<const char*>(entry->Name),
                  *slot);
        }
    }
}

/// Changes an entry of an import table.
inline void WriteImport(void*& slot, void* function) {
    DWORD protection = 0;
    VirtualProtect(&slot, sizeof(slot), PAGE_READWRITE, &protection);
    slot = function;
    VirtualProtect(&slot, sizeof(slot), protection, &protection);
}

/// Calls the function whenever the library has been mapped, before its first instruction runs. Ends the
/// program if the system offers no load notifications.
void AtEachLibraryLoad(void (*redirect)(HMODULE library));
