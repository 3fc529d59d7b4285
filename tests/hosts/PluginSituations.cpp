#include "Cycles.h"
#include "ShortClient.h"
#include "Situations.h"

#include <windows.h>

#include <optional>

namespace {

bool RuntimeIsShared() {
    return GetModuleHandleW(sizeof(void*) == 8 ? L"libgcc_s_seh-1.dll" : L"libgcc_s_dw2-1.dll") != nullptr;
}

/// Loads a library and its dependencies from its folder.
HMODULE LoadFromFolder(const wchar_t* path) {
    CHECK_THAT(!RuntimeIsShared());
    wchar_t full[MAX_PATH];
    const DWORD length = GetFullPathNameW(path, MAX_PATH, full, nullptr);
    CHECK_THAT(length > 0 && length < MAX_PATH);
    const HMODULE library = LoadLibraryExW(full, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    CHECK_THAT(library != nullptr);
    CHECK_THAT(RuntimeIsShared());
    return library;
}

/// Unloads the runtime and returns the number of references to it. It holds one itself.
int ReleaseRuntime(HMODULE runtime) {
    int references = 0;
    for (; RuntimeIsShared(); ++references)
        CHECK_THAT(FreeLibrary(runtime));
    std::printf("%d references to the shared runtime\n", references);
    return references;
}

class Plugin {
public:
    explicit Plugin(const wchar_t* path) : m_module(LoadFromFolder(path)) {}
    ~Plugin() { CHECK_THAT(FreeLibrary(m_module)); }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    void Throw() const { Function<void (*)()>("PluginThrows")(); }
    void UseLibrary(const wchar_t* path) const {
        Function<void (*)(const wchar_t*)>("PluginUsesLibrary")(path);
    }

private:
    template<class Type>
    Type Function(const char* name) const {
        const FARPROC address = GetProcAddress(m_module, name);
        CHECK_THAT(address != nullptr);
        return reinterpret_cast<Type>(reinterpret_cast<void*>(address));
    }

    HMODULE m_module;
};

/// Keeps the library loaded between the client's uses.
class LoadedLibrary {
public:
    explicit LoadedLibrary(const wchar_t* path) : m_module(LoadLibraryW(path)) {
        CHECK_THAT(m_module != nullptr);
    }
    ~LoadedLibrary() { CHECK_THAT(FreeLibrary(m_module)); }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

private:
    HMODULE m_module;
};

} // namespace

void RunPluginBefore(const Situation& situation) {
    CHECK_THAT(!RuntimeIsShared());
    std::optional<Plugin> plugin(situation.argument);
    plugin->Throw();
    CheckCycles([&] {
        UseLibrary(situation.library);
        CHECK_THAT(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
        plugin->Throw();
    });
    const LoadedLibrary library(situation.library);
    UseLibrary(situation.library);
    plugin.reset();
    UseLibrary(situation.library);
}

void RunPluginAfter(const Situation& situation) {
    CHECK_THAT(!RuntimeIsShared());
    const LoadedLibrary library(situation.library);
    UseLibrary(situation.library);
    {
        const Plugin plugin(situation.argument);
        plugin.Throw();
        CheckCycles([&] {
            UseLibrary(situation.library);
            plugin.Throw();
        });
    }
    UseLibrary(situation.library);
}

void RunPluginUses(const Situation& situation) {
    {
        const Plugin plugin(situation.argument);
        CheckCycles([&] {
            plugin.UseLibrary(situation.library);
            CHECK_THAT(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
        });
    }
    UseLibrary(situation.library);
}

void RunRuntimeReleased(const Situation& situation) {
    const int own = ReleaseRuntime(LoadFromFolder(situation.argument));
    const HMODULE runtime = LoadFromFolder(situation.argument);
    CheckCycles([&] { UseLibrary(situation.library); });
    const LoadedLibrary library(situation.library);
    UseLibrary(situation.library);
    CHECK_THAT(ReleaseRuntime(runtime) == own);
    UseLibrary(situation.library);
}
