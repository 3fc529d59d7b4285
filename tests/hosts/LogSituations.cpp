#include "Cycles.h"
#include "ShortClient.h"
#include "Situations.h"

#include <windows.h>

#include <cwchar>
#include <string>

namespace {

void ConfigureLog(const wchar_t* path) {
    HKEY key = nullptr;
    CHECK_THAT(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects\\Log", 0,
                               nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr) == ERROR_SUCCESS);
    const DWORD on = 1;
    CHECK_THAT(RegSetValueExW(key, L"Enabled", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&on),
                              sizeof(on)) == ERROR_SUCCESS);
    CHECK_THAT(RegSetValueExW(key, L"FileName", 0, REG_SZ, reinterpret_cast<const BYTE*>(path),
                              static_cast<DWORD>((std::wcslen(path) + 1) * sizeof(wchar_t))) ==
               ERROR_SUCCESS);
    RegCloseKey(key);
}

void CheckClientCycles(const Situation& situation) {
    ConfigureLog(situation.argument);
    CheckCycles([&] {
        UseLibrary(situation.library);
        CHECK_THAT(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
    });
}

std::wstring FileText(const wchar_t* path) {
    const HANDLE file = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    CHECK_THAT(file != INVALID_HANDLE_VALUE);
    std::wstring text(GetFileSize(file, nullptr) / sizeof(wchar_t), L'\0');
    DWORD size = 0;
    CHECK_THAT(
        ReadFile(file, text.data(), static_cast<DWORD>(text.size() * sizeof(wchar_t)), &size, nullptr));
    CloseHandle(file);
    return text;
}

} // namespace

void RunLogWritten(const Situation& situation) {
    DeleteFileW(situation.argument);
    CheckClientCycles(situation);
    const std::wstring text = FileText(situation.argument);
    CHECK_THAT(text.find(L"[CPolicyResultsImpl::put_Xml] Exception: PolicyResults element is missing.\r\n") !=
               std::wstring::npos);
}

void RunLogUnreachable(const Situation& situation) {
    CheckClientCycles(situation);
    CHECK_THAT(GetFileAttributesW(situation.argument) == INVALID_FILE_ATTRIBUTES);
}
