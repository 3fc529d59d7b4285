#include "tests/support/ProcessCounters.h"

#include <windows.h>

#include <catch2/catch.hpp>

#include <cstdio>
#include <cstring>
#include <set>
#include <string>
#include <vector>

// What the library does in DllMain, which runs under the loader lock while other threads may wait.

namespace {

const wchar_t libraryPath[] = L"" LIBRARY_PATH;

/// The imported functions and whether each was called. Plain memory, because Note must not call anything.
constexpr std::size_t maxImports = 512;
const char* importNames[maxImports];
bool called[maxImports];
std::size_t importCount = 0;

void __cdecl Note(std::size_t index) {
    called[index] = true;
}

void PutAddress(BYTE*& code, const void* target) {
    const auto distance =
        reinterpret_cast<std::uintptr_t>(target) - (reinterpret_cast<std::uintptr_t>(code) + 4);
    std::memcpy(code, &distance, 4);
    code += 4;
}

/// Writes code that notes the call and jumps to the target with all registers preserved.
void WriteThunk(BYTE* code, std::size_t index, const void* target) {
    *code++ = 0x60; // pushad
    *code++ = 0x9C; // pushfd
    *code++ = 0x68; // push index
    std::memcpy(code, &index, 4);
    code += 4;
    *code++ = 0xE8; // call
    PutAddress(code, reinterpret_cast<const void*>(&Note));
    constexpr BYTE rest[] = {0x83, 0xC4, 0x04, 0x9D, 0x61, 0xE9}; // add esp, 4; popfd; popad; jmp
    std::memcpy(code, rest, sizeof(rest));
    code += sizeof(rest);
    PutAddress(code, target);
}

bool IsCode(const void* address) {
    MEMORY_BASIC_INFORMATION information;
    REQUIRE(VirtualQuery(address, &information, sizeof(information)) != 0);
    return (information.Protect &
            (PAGE_EXECUTE | PAGE_EXECUTE_READ | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY)) != 0;
}

/// The library, mapped by the loader without resolved imports; its entry point has not run.
class MappedLibrary {
public:
    MappedLibrary() : m_module(LoadLibraryExW(libraryPath, nullptr, DONT_RESOLVE_DLL_REFERENCES)) {
        REQUIRE(m_module != nullptr);
        m_base = reinterpret_cast<BYTE*>(m_module);
        m_headers = reinterpret_cast<IMAGE_NT_HEADERS*>(
            m_base + reinterpret_cast<IMAGE_DOS_HEADER*>(m_base)->e_lfanew);
        m_thunks = static_cast<BYTE*>(
            VirtualAlloc(nullptr, maxImports * thunkSize, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
        REQUIRE(m_thunks != nullptr);
        ResolveImports();
    }
    ~MappedLibrary() {
        FreeLibrary(m_module);
        VirtualFree(m_thunks, 0, MEM_RELEASE);
    }
    MappedLibrary(const MappedLibrary&) = delete;
    MappedLibrary& operator=(const MappedLibrary&) = delete;

    BOOL CallEntryPoint(DWORD reason) const {
        using EntryPoint = BOOL(WINAPI*)(HINSTANCE, DWORD, void*);
        const auto entry =
            reinterpret_cast<EntryPoint>(m_base + m_headers->OptionalHeader.AddressOfEntryPoint);
        return entry(m_module, reason, nullptr);
    }

private:
    static constexpr std::size_t thunkSize = 32;

    void ResolveImports() {
        const IMAGE_DATA_DIRECTORY& table =
            m_headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        const IMAGE_DATA_DIRECTORY& addresses =
            m_headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
        DWORD protection = 0;
        REQUIRE(
            VirtualProtect(m_base + addresses.VirtualAddress, addresses.Size, PAGE_READWRITE, &protection));
        auto* library = reinterpret_cast<IMAGE_IMPORT_DESCRIPTOR*>(m_base + table.VirtualAddress);
        for (; library->Name; ++library) {
            const HMODULE from = LoadLibraryA(reinterpret_cast<char*>(m_base + library->Name));
            REQUIRE(from != nullptr);
            const auto* name = reinterpret_cast<IMAGE_THUNK_DATA*>(m_base + library->OriginalFirstThunk);
            auto* slot = reinterpret_cast<const void**>(m_base + library->FirstThunk);
            for (; name->u1.AddressOfData; ++name, ++slot)
                *slot = Resolve(from, *name);
        }
    }

    const void* Resolve(HMODULE from, const IMAGE_THUNK_DATA& import) const {
        REQUIRE(!IMAGE_SNAP_BY_ORDINAL(import.u1.Ordinal));
        const auto* entry = reinterpret_cast<IMAGE_IMPORT_BY_NAME*>(m_base + import.u1.AddressOfData);
        const auto* name = reinterpret_cast<const char*>(entry->Name);
        INFO(name);
        const auto* target = reinterpret_cast<const void*>(GetProcAddress(from, name));
        REQUIRE(target != nullptr);
        if (!IsCode(target)) // a variable of the C runtime
            return target;
        REQUIRE(importCount < maxImports);
        importNames[importCount] = name;
        BYTE* thunk = m_thunks + importCount * thunkSize;
        WriteThunk(thunk, importCount++, target);
        return thunk;
    }

    HMODULE m_module;
    BYTE* m_base = nullptr;
    IMAGE_NT_HEADERS* m_headers = nullptr;
    BYTE* m_thunks = nullptr;
};

std::set<std::string> CalledImports() {
    std::set<std::string> names;
    for (std::size_t i = 0; i < importCount; ++i) {
        if (called[i])
            names.insert(importNames[i]);
    }
    return names;
}

// The only functions that may be called during attach.
const std::set<std::string> allowed{
    // the log's configuration and the resource strings with its location
    "FindResourceW", "LoadResource", "LockResource", "SizeofResource", "RegOpenKeyExW", "RegQueryValueExW",
    "RegCloseKey", "AcquireSRWLockExclusive", "ReleaseSRWLockExclusive", "GetCurrentThreadId",
    // opts out of thread notifications
    "DisableThreadLibraryCalls",
    // stack guard value
    "GetSystemTimeAsFileTime", "QueryPerformanceCounter", "GetCurrentProcessId",
    // memory and strings
    "malloc", "calloc", "realloc", "free", "memcpy", "wcslen", "_errno",
    // start of the C runtime
    "_initterm", "_lock", "_unlock"};

} // namespace

TEST_CASE("Attach_calls_what_the_log_configuration_needs_and_nothing_else") {
    const MappedLibrary library;
    REQUIRE(importCount > 50);
    REQUIRE(library.CallEntryPoint(DLL_PROCESS_ATTACH));
    const std::set<std::string> names = CalledImports();
    REQUIRE(library.CallEntryPoint(DLL_PROCESS_DETACH));
    std::printf("attach calls:");
    for (const std::string& name : names)
        std::printf(" %s", name.c_str());
    std::printf("\n");
    CHECK(names.count("FindResourceW") == 1);
    CHECK(names.count("RegOpenKeyExW") == 1);
    for (const std::string& name : names) {
        INFO(name);
        CHECK(allowed.count(name) == 1);
    }
}

TEST_CASE("Attach_adds_at_most_64_KB_to_the_heap") {
    FreeLibrary(LoadLibraryW(libraryPath)); // its dependencies remain loaded
    const ProcessCounters before = ProcessCounters::Now();
    const HMODULE library = LoadLibraryW(libraryPath);
    REQUIRE(library != nullptr);
    const ProcessCounters after = ProcessCounters::Now();
    std::printf("attach: %s\n", Growth(before, after).c_str());
    CHECK(after.heapBytes >= before.heapBytes);
    CHECK(after.heapBytes - before.heapBytes <= 64 * 1024);
    FreeLibrary(library);
}
