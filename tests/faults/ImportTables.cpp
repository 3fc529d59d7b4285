#include "ImportTables.h"

#include "ImportHook.h"

#include "tests/support/LibraryImports.h"

#include <objbase.h>
#include <oleauto.h>

#include <cstdlib>
#include <cstring>

namespace {

// Kinds of failures. No other code here returns these HRESULTs, so a test can identify the cause.

Failure OutOfMemory() {
    return {0, 0, E_OUTOFMEMORY, "", false};
}
Failure FailsWith(HRESULT result) {
    return {static_cast<DWORD>(result), 0, result, "", false};
}
Failure RegistryFails(LSTATUS status) {
    return {static_cast<DWORD>(status), 0, HRESULT_FROM_WIN32(static_cast<DWORD>(status)), "", false};
}
Failure ReturnsZero(DWORD lastError, HRESULT surfacesAs) {
    return {0, lastError, surfacesAs, "", false};
}
Failure Absorbed(ULONG_PTR value, DWORD lastError, const char* why) {
    return {value, lastError, S_OK, why, false};
}
/// A release that succeeds but reports failure.
Failure GiveBackFails(ULONG_PTR value, DWORD lastError) {
    return {value, lastError, S_OK, "the caller does not use the resource again", true};
}

constexpr char LogOnly[] = "only the log needs it, and the log never disturbs its caller";
constexpr char CatalogueOnly[] = "a catalogue that cannot be read is logged and tried again";
constexpr DWORD None = 0;

// The C runtime's memory, which LibraryMemory counts.

Failure noMemory = OutOfMemory();
void* (*originalMalloc)(std::size_t);
void* (*originalCalloc)(std::size_t, std::size_t);
void* (*originalRealloc)(void*, std::size_t);

void* Malloc(std::size_t size) {
    return FaultInjector::Strikes("malloc", noMemory) ? nullptr : originalMalloc(size);
}

void* Calloc(std::size_t count, std::size_t size) {
    return FaultInjector::Strikes("calloc", noMemory) ? nullptr : originalCalloc(count, size);
}

void* Realloc(void* block, std::size_t size) {
    return FaultInjector::Strikes("realloc", noMemory) ? nullptr : originalRealloc(block, size);
}

template<auto* original>
void Set(void* address) {
    std::memcpy(original, &address, sizeof(address));
}

template<class Function>
void* Address(Function function) {
    return reinterpret_cast<void*>(function);
}

// BSTRs, counted in the ledger.

decltype(&SysAllocStringLen) originalAllocText;
decltype(&SysFreeString) originalFreeText;

BSTR WINAPI AllocText(const OLECHAR* text, UINT length) {
    BSTR copy =
        FaultInjector::Strikes("SysAllocStringLen", noMemory) ? nullptr : originalAllocText(text, length);
    FaultInjector::CountTexts(copy != nullptr);
    return copy;
}

void WINAPI FreeText(BSTR text) {
    FaultInjector::CountTexts(-(text != nullptr));
    originalFreeText(text);
}

// A full disk: the first half of the data is written.

decltype(&WriteFile) originalWriteFile;
Failure shortWrite = Absorbed(TRUE, None, LogOnly);
Failure refusedWrite = Absorbed(FALSE, ERROR_DISK_FULL, LogOnly);

BOOL WINAPI WriteToFile(HANDLE file, const void* data, DWORD size, DWORD* written, OVERLAPPED* position) {
    if (FaultInjector::Strikes("WriteFile, half of it", shortWrite))
        return originalWriteFile(file, data, size / 2 | 1, written, position);
    if (FaultInjector::Strikes("WriteFile", refusedWrite)) {
        SetLastError(ERROR_DISK_FULL);
        return FALSE;
    }
    return originalWriteFile(file, data, size, written, position);
}

// Never fails for kernel32.dll, which is in every process.

decltype(&GetModuleHandleW) originalGetModuleHandle;
Failure moduleNotFound = Absorbed(0, ERROR_MOD_NOT_FOUND, CatalogueOnly);

HMODULE WINAPI GetModule(const wchar_t* name) {
    if (wcscmp(name, L"kernel32.dll") != 0 && FaultInjector::Strikes("GetModuleHandleW", moduleNotFound)) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return nullptr;
    }
    return originalGetModuleHandle(name);
}

#define FAILS(function, ...) Fails<#function, decltype(&function)>(__VA_ARGS__)

const std::vector<Import>& FallibleImports() {
    static const std::vector<Import> imports = {
        {"malloc", Address(Malloc), Set<&originalMalloc>, noMemory, ""},
        {"calloc", Address(Calloc), Set<&originalCalloc>, noMemory, ""},
        {"realloc", Address(Realloc), Set<&originalRealloc>, noMemory, ""},
        {"SysAllocStringLen", Address(AllocText), Set<&originalAllocText>, noMemory, ""},
        {"WriteFile", Address(WriteToFile), Set<&originalWriteFile>, refusedWrite, ""},
        {"GetModuleHandleW", Address(GetModule), Set<&originalGetModuleHandle>, moduleNotFound, ""},

        FAILS(RegCloseKey, GiveBackFails(ERROR_INVALID_HANDLE, None)),
        FAILS(RegCreateKeyExW, RegistryFails(ERROR_NO_SYSTEM_RESOURCES)),
        FAILS(RegDeleteTreeW, RegistryFails(ERROR_KEY_HAS_CHILDREN)),
        FAILS(RegOpenKeyExW, Absorbed(ERROR_ACCESS_DENIED, None, LogOnly)),
        FAILS(RegQueryValueExW, Absorbed(ERROR_NOT_ENOUGH_MEMORY, None, LogOnly)),
        FAILS(RegSetValueExW, RegistryFails(ERROR_REGISTRY_IO_FAILED)),

        FAILS(CloseHandle, GiveBackFails(FALSE, ERROR_INVALID_HANDLE)),
        FAILS(CreateFileW, Absorbed(static_cast<ULONG_PTR>(-1), ERROR_TOO_MANY_OPEN_FILES, LogOnly)),
        FAILS(FlushFileBuffers, Absorbed(FALSE, ERROR_DISK_FULL, LogOnly)),
        FAILS(FormatMessageW, Absorbed(0, ERROR_MR_MID_NOT_FOUND, "a substitute text is used")),
        FAILS(GetFileAttributesW, Absorbed(INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED, LogOnly)),
        FAILS(GetFileInformationByHandle, Absorbed(FALSE, ERROR_INVALID_HANDLE, LogOnly)),
        FAILS(GetFileInformationByHandleEx, Absorbed(FALSE, ERROR_INVALID_HANDLE, LogOnly)),
        FAILS(GetFileSizeEx, Absorbed(FALSE, ERROR_INVALID_HANDLE, LogOnly)),
        FAILS(GetModuleFileNameW,
              ReturnsZero(ERROR_NOT_ENOUGH_MEMORY, HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY))),
        FAILS(LocalFree, GiveBackFails(1, ERROR_INVALID_HANDLE)),
        FAILS(LockFileEx, Absorbed(FALSE, ERROR_NOT_SUPPORTED, LogOnly)),
        FAILS(MoveFileExW, Absorbed(FALSE, ERROR_SHARING_VIOLATION, LogOnly)),
        FAILS(ReadFile, Absorbed(FALSE, ERROR_READ_FAULT, CatalogueOnly)),
        FAILS(SetEndOfFile, Absorbed(FALSE, ERROR_DISK_FULL, LogOnly)),
        FAILS(SetFileAttributesW, Absorbed(FALSE, ERROR_ACCESS_DENIED, LogOnly)),
        FAILS(SetFilePointerEx, Absorbed(FALSE, ERROR_INVALID_HANDLE, LogOnly)),
        FAILS(UnlockFileEx, Absorbed(FALSE, ERROR_NOT_LOCKED, LogOnly)),
        FAILS(SetThreadLocale,
              Absorbed(FALSE, ERROR_INVALID_PARAMETER, "the keys do not depend on the locale")),
        FAILS(DisableThreadLibraryCalls,
              Absorbed(FALSE, ERROR_INVALID_HANDLE, "DllMain ignores thread notifications")),

        FAILS(CLSIDFromProgID, FailsWith(REGDB_E_READREGDB)),
        FAILS(CoCreateInstance, FailsWith(CO_E_DLLNOTFOUND)),
        FAILS(OleRun, FailsWith(CO_E_SERVER_EXEC_FAILURE)),
        FAILS(CreateErrorInfo, Absorbed(static_cast<DWORD>(E_OUTOFMEMORY), None,
                                        "the caller gets the failure without a description")),
        FAILS(GetErrorInfo,
              Absorbed(S_FALSE, None, "the caller gets a child's failure without its description")),
        FAILS(SetErrorInfo, Absorbed(static_cast<DWORD>(E_OUTOFMEMORY), None,
                                     "the caller gets the failure without a description")),

        FAILS(LoadTypeLibEx, FailsWith(TYPE_E_IOERROR)),
        FAILS(QueryPathOfRegTypeLib, FailsWith(TYPE_E_REGISTRYACCESS)),
        FAILS(RegisterTypeLib, FailsWith(TYPE_E_REGISTRYACCESS)),
        FAILS(UnRegisterTypeLib, FailsWith(TYPE_E_CANTCREATETMPFILE)),

        FAILS(FindResourceW, Absorbed(0, ERROR_RESOURCE_NAME_NOT_FOUND, "a text is empty")),
        FAILS(LoadResource, Absorbed(0, ERROR_RESOURCE_DATA_NOT_FOUND, "a text is empty")),
    };
    return imports;
}

const std::vector<Import>& InfallibleImports() {
    static constexpr char lock[] = "allocates nothing and waits until it succeeds";
    static constexpr char reader[] = "reads the state of the process";
    static constexpr char compute[] = "depends only on its arguments";
    static constexpr char giveBack[] = "releases and reports nothing";
    static constexpr char unwinder[] = "works on the stack and reports nothing";
    static const std::vector<Import> imports = {
        {"SysFreeString", Address(FreeText), Set<&originalFreeText>, {}, giveBack},
        CannotFail("free", giveBack),
        CannotFail("GetProcAddress", "every system has these functions"),
        CannotFail("AcquireSRWLockExclusive", lock),
        CannotFail("ReleaseSRWLockExclusive", lock),
        CannotFail("SleepConditionVariableSRW", lock),
        CannotFail("WakeConditionVariable", lock),
        CannotFail("InitializeCriticalSection", lock),
        CannotFail("EnterCriticalSection", lock),
        CannotFail("LeaveCriticalSection", lock),
        CannotFail("DeleteCriticalSection", lock),
        CannotFail("_lock", lock),
        CannotFail("_unlock", lock),
        CannotFail("DecodePointer", compute),
        CannotFail("EncodePointer", compute),
        CannotFail("GetCurrentProcess", reader),
        CannotFail("IsWow64Process", reader),
        CannotFail("GetCurrentProcessId", reader),
        CannotFail("GetCurrentThreadId", reader),
        CannotFail("GetLastError", reader),
        CannotFail("LockResource", "returns the address of a loaded resource"),
        CannotFail("SizeofResource", "the resource was found"),
        CannotFail("GetLocalTime", reader),
        CannotFail("GetSystemTime", reader),
        CannotFail("GetSystemTimeAsFileTime", reader),
        CannotFail("QueryPerformanceCounter", reader),
        CannotFail("GetThreadLocale", reader),
        CannotFail("GetTickCount", reader),
        CannotFail("SetLastError", reader),
        CannotFail("Sleep", reader),
        CannotFail("SwitchToThread", reader),
        CannotFail("TlsGetValue", "the slot was allocated"),
        CannotFail("OutputDebugStringW", "returns nothing"),
        CannotFail("StringFromGUID2", "the buffer is large enough"),
        CannotFail("SysStringLen", reader),
        CannotFail("__mb_cur_max", "a variable"),
        CannotFail("_iob", "a variable"),
        // In 64 bits, variables of the C runtime are functions, and the system unwinds exceptions.
        CannotFail("___mb_cur_max_func", reader),
        CannotFail("___lc_codepage_func", reader),
        CannotFail("__iob_func", reader),
        CannotFail("RaiseException", unwinder),
        CannotFail("RtlCaptureContext", unwinder),
        CannotFail("RtlLookupFunctionEntry", unwinder),
        CannotFail("RtlUnwindEx", unwinder),
        CannotFail("RtlVirtualUnwind", unwinder),
        CannotFail("_errno", "a thread variable that exists from the thread's start"),
        CannotFail("_initterm", "runs constructors"),
        CannotFail("localeconv", reader),
        CannotFail("memchr", compute),
        CannotFail("memcmp", compute),
        CannotFail("memcpy", compute),
        CannotFail("memmove", compute),
        CannotFail("memset", compute),
        CannotFail("strchr", compute),
        CannotFail("strcmp", compute),
        CannotFail("strlen", compute),
        CannotFail("strncmp", compute),
        CannotFail("wcslen", compute),
    };
    return imports;
}

const std::vector<Import>& UncalledImports() {
    static constexpr char fatal[] = "ends the process";
    static constexpr char output[] = "console output of the runtime";
    static constexpr char narrow[] = "narrow text in a wide format, which the library never uses";
    static constexpr char unused[] = "part of the runtime that the library does not use";
    static const std::vector<Import> imports = {
        NotCalled<"abort">(fatal),
        NotCalled<"_amsg_exit">(fatal),
        NotCalled<"fwprintf">(output),
        NotCalled<"vfprintf">(output),
        NotCalled<"fputwc">(output),
        NotCalled<"fwrite">(output),
        NotCalled<"IsDBCSLeadByteEx">(narrow),
        NotCalled<"MultiByteToWideChar">(narrow),
        NotCalled<"setlocale">(unused),
        NotCalled<"strerror">(unused),
        NotCalled<"atoi">(unused),
        NotCalled<"_read">(unused),
        NotCalled<"_write">(unused),
        NotCalled<"_close">(unused),
        NotCalled<"FormatMessageA">(unused),
        NotCalled<"LoadLibraryW">(unused),
        NotCalled<"VirtualProtect">(unused),
        NotCalled<"VirtualQuery">(unused),
    };
    return imports;
}

const Import* Find(const std::vector<Import>& table, const char* name) {
    for (const Import& import : table)
        if (std::strcmp(import.name, name) == 0)
            return &import;
    return nullptr;
}

void* Lead(const Import& import, void* address) {
    if (import.setOriginal)
        import.setOriginal(address);
    return import.replacement ? import.replacement : address;
}

const Import* FindInAnyTable(const char* name) {
    for (const auto* table : {&FallibleImports(), &InfallibleImports(), &UncalledImports()})
        if (const Import* import = Find(*table, name))
            return import;
    return nullptr;
}

} // namespace

void LeadImportsThroughTables(HMODULE library) {
    ForEachImport(library, [](const char* name, void*& slot) {
        const Import* import = FindInAnyTable(name);
        if (!import)
            return; // Imports_test.cpp reports it
        WriteImport(slot, Lead(*import, slot));
    });
}

std::vector<std::string> ImportsOf(HMODULE library) {
    std::vector<std::string> names;
    ForEachImport(library, [&](const char* name, void*&) { names.emplace_back(name); });
    return names;
}

std::vector<TableEntry> TableEntries() {
    std::vector<TableEntry> entries;
    for (const auto* table : {&FallibleImports(), &InfallibleImports(), &UncalledImports()})
        for (const Import& import : *table)
            entries.push_back({import.name, table == &FallibleImports(), import.reason});
    return entries;
}
