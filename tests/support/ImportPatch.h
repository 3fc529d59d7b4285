#pragma once

#include "tests/support/LibraryImports.h"

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
        WriteImport(*m_slot, replacement);
    }
    ~ImportPatch() { WriteImport(*m_slot, m_original); }
    ImportPatch(const ImportPatch&) = delete;
    ImportPatch& operator=(const ImportPatch&) = delete;

    void* Original() const { return m_original; }

private:
    /// The import table slot of a function; null if the module does not import it.
    static void** FindSlot(HMODULE module, const char* function) {
        void** found = nullptr;
        ForEachImport(module, [&](const char* name, void*& slot) {
            if (std::strcmp(name, function) == 0)
                found = &slot;
        });
        return found;
    }

    void** m_slot;
    void* m_original = nullptr;
};
