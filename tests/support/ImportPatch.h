#pragma once

#include <windows.h>

#include <catch2/catch.hpp>

#include <cstring>

/// Replaces one imported function of a loaded module, for this module only, during its lifetime.
class ImportPatch {
public:
    ImportPatch(HMODULE module, const char* function, void* replacement)
        : m_slot(FindSlot(module, function)) {
        INFO(function);
        REQUIRE(m_slot != nullptr);
        m_original = *m_slot;
        Write(replacement);
    }
    ~ImportPatch() { Write(m_original); }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    void* Original() const { return m_original; }

private:
    /// The import table slot of a function; null if the module does not import it.
    static void** FindSlot(HMODULE module, const char* function) {
        auto* const base = reinterpret_cast<BYTE*>(module);
        const auto* const dos = reinterpret_cast<IMAGE_DOS_HEADER*>(base);
        const auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const IMAGE_DATA_DIRECTORY& imports =
            headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
        for (; library->Name; ++library) {
            auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
            auto* slot = reinterpret_cast<void**>(base + library->FirstThunk);
            for (; name->u1.AddressOfData; ++name, ++slot) {
                if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal))
                    continue;
                const auto* entry = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
                if (std::strcmp(reinterpret_cast<const char*>(entry->Name), function) == 0)
                    return slot;
            }
        }
        return nullptr;
    }

    void Write(void* address) {
        DWORD protection = 0;
        VirtualProtect(m_slot, sizeof(*m_slot), PAGE_READWRITE, &protection);
        *m_slot = address;
        VirtualProtect(m_slot, sizeof(*m_slot), protection, &protection);
    }

    void** m_slot;
    void* m_original = nullptr;
};
