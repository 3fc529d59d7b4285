#include "tests/support/Library.h"
#include "tests/support/LibraryMemory.h"

#include <windows.h>

#include <catch2/catch.hpp>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <set>
#include <string>
#include <vector>

// What the library does in DllMain, which runs under the loader lock while other threads may wait.

namespace {

/// The imported functions and whether each was called. Plain memory, because Note must not call anything.
constexpr std::size_t MaxImports = 512;
const char* importNames[MaxImports];
bool called[MaxImports];
std::size_t importCount = 0;

void __cdecl Note(std::size_t index) {
    called[index] = true;
}

class CodeWriter {
public:
    explicit CodeWriter(BYTE* code) : m_code(code) {}

    void Put(std::initializer_list<BYTE> bytes) { m_code = std::copy(bytes.begin(), bytes.end(), m_code); }
    template<class Value>
    void PutValue(Value value) {
        std::memcpy(m_code, &value, sizeof(value));
        m_code += sizeof(value);
    }
    void PutDistance(const void* target) {
        PutValue(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(target) -
                                            (reinterpret_cast<std::uintptr_t>(m_code) + 4)));
    }

private:
    BYTE* m_code;
};

/// Writes code that notes the call and jumps to the target with all argument registers preserved.
void WriteThunk(BYTE* code, std::size_t index, const void* target) {
    CodeWriter writer(code);
    const auto* const note = reinterpret_cast<const void*>(&Note);
#ifdef _WIN64
    // push rax, rcx, rdx, r8 to r11; pushfq; sub rsp, 40; mov ecx, index
    writer.Put({0x50, 0x51, 0x52, 0x41, 0x50, 0x41, 0x51, 0x41, 0x52, 0x41, 0x53, 0x9C});
    writer.Put({0x48, 0x83, 0xEC, 0x28, 0xB9});
    writer.PutValue(static_cast<std::uint32_t>(index));
    writer.Put({0x48, 0xB8}); // mov rax, note
    writer.PutValue(note);
    // call rax; add rsp, 40; popfq; pop r11 to r8, rdx, rcx, rax; jmp [rip]
    writer.Put({0xFF, 0xD0, 0x48, 0x83, 0xC4, 0x28, 0x9D, 0x41, 0x5B, 0x41, 0x5A, 0x41, 0x59});
    writer.Put({0x41, 0x58, 0x5A, 0x59, 0x58, 0xFF, 0x25, 0x00, 0x00, 0x00, 0x00});
    writer.PutValue(target);
#else
    writer.Put({0x60, 0x9C, 0x68}); // pushad; pushfd; push index
    writer.PutValue(index);
    writer.Put({0xE8}); // call note
    writer.PutDistance(note);
    writer.Put({0x83, 0xC4, 0x04, 0x9D, 0x61, 0xE9}); // add esp, 4; popfd; popad; jmp target
    writer.PutDistance(target);
#endif
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
    MappedLibrary() : m_module(LoadLibraryExW(LibraryPath().c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES)) {
        REQUIRE(m_module != nullptr);
        m_base = reinterpret_cast<BYTE*>(m_module);
        m_headers = reinterpret_cast<IMAGE_NT_HEADERS*>(
            m_base + reinterpret_cast<IMAGE_DOS_HEADER*>(m_base)->e_lfanew);
        m_thunks = static_cast<BYTE*>(
            VirtualAlloc(nullptr, MaxImports * ThunkSize, MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
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
    static constexpr std::size_t ThunkSize = 64;

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
        REQUIRE(importCount < MaxImports);
        importNames[importCount] = name;
        BYTE* thunk = m_thunks + importCount * ThunkSize;
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
const std::set<std::string> Allowed{
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
        CHECK(Allowed.count(name) == 1);
    }
}

TEST_CASE("Attach_allocates_at_most_64_KB_and_detach_frees_them") {
    const HMODULE library = LoadLibraryW(LibraryPath().c_str());
    REQUIRE(library != nullptr);
    const std::size_t bytes = LibraryMemory::Now().bytes;
    std::printf("attach: %zu bytes\n", bytes);
    CHECK(bytes <= 64 * 1024);
    FreeLibrary(library);
    CHECK(LibraryMemory::Now().bytes == 0);
}
