#include "tests/support/LogSession.h"

namespace {

constexpr wchar_t BaseKey[] = L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects";
constexpr wchar_t LogKey[] = L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects\\Log";
/// Saves the machine's configuration during a test: a copy, or a value with the topmost key that the test
/// must remove. After an interrupted test it remains, and the next test restores from it.
constexpr wchar_t SavedKey[] = L"SOFTWARE\\Corvane.SavedByLogTests";
constexpr wchar_t NewKeyValue[] = L"NewKey";

/// Copies a key with its subkeys. False if it does not exist.
bool CopyKey(const wchar_t* from, const wchar_t* to) {
    HKEY source = nullptr, target = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, from, 0, KEY_READ, &source) != ERROR_SUCCESS)
        return false;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, to, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &target, nullptr);
    RegCopyTreeW(source, nullptr, target);
    RegCloseKey(target);
    RegCloseKey(source);
    return true;
}

void DeleteKey(const wchar_t* key) {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, key);
}

bool KeyExists(const wchar_t* name) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, name, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    RegCloseKey(key);
    return true;
}

/// The topmost missing key of the log's path; empty if none is missing.
std::wstring FirstMissingKey() {
    for (const wchar_t* key : {L"SOFTWARE\\Corvane", L"SOFTWARE\\Corvane\\PrintAgent", BaseKey, LogKey})
        if (!KeyExists(key))
            return key;
    return {};
}

void SaveMachinesOwn() {
    const std::wstring newKey = FirstMissingKey();
    if (newKey.empty()) {
        CopyKey(LogKey, SavedKey);
        return;
    }
    const auto size = static_cast<DWORD>((newKey.size() + 1) * sizeof(wchar_t));
    REQUIRE(RegSetKeyValueW(HKEY_LOCAL_MACHINE, SavedKey, NewKeyValue, REG_SZ, newKey.c_str(), size) ==
            ERROR_SUCCESS);
}

void RestoreMachinesOwn() {
    if (!KeyExists(SavedKey))
        return; // already saved by an interrupted test
    wchar_t newKey[128];
    DWORD size = sizeof(newKey);
    const bool isNew = RegGetValueW(HKEY_LOCAL_MACHINE, SavedKey, NewKeyValue, RRF_RT_REG_SZ, nullptr, newKey,
                                    &size) == ERROR_SUCCESS;
    DeleteKey(LogKey);
    if (isNew)
        DeleteKey(newKey);
    else
        CopyKey(SavedKey, LogKey);
    DeleteKey(SavedKey);
}

} // namespace

LogSession::LogSession() {
    Unload();
    if (!KeyExists(SavedKey))
        SaveMachinesOwn();
    DeleteKey(LogKey);
    REQUIRE(RegCreateKeyExW(HKEY_LOCAL_MACHINE, LogKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_key,
                            nullptr) == ERROR_SUCCESS);
}

LogSession::~LogSession() {
    SetErrorInfo(0, nullptr);
    CoFreeUnusedLibrariesEx(0, 0);
    RegCloseKey(m_key);
    RestoreMachinesOwn();
}

void LogSession::Put(const wchar_t* name, std::uint32_t number) {
    REQUIRE(RegSetValueExW(m_key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                           sizeof(number)) == ERROR_SUCCESS);
}

void LogSession::Put(const wchar_t* name, const std::wstring& text, DWORD type) {
    const auto size = static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t));
    REQUIRE(RegSetValueExW(m_key, name, 0, type, reinterpret_cast<const BYTE*>(text.c_str()), size) ==
            ERROR_SUCCESS);
}

void LogSession::Enable(std::uint32_t options) {
    Put(L"Enabled", 1u);
    Put(L"Options", options);
    Put(L"FileName", Path());
}

std::wstring LogSession::TakeText() {
    if (!FileExists(Path()))
        return {};
    const std::wstring text = FileText(Path());
    REQUIRE(text.size() >= m_taken);
    std::wstring added = text.substr(m_taken);
    m_taken = text.size();
    return added;
}

bool LogSession::KeyIsThere() {
    return KeyExists(LogKey);
}

void LogSession::Unload() {
    CoFreeUnusedLibrariesEx(0, 0);
    REQUIRE(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
}

void FailOnce() {
    REQUIRE_HR(Put(CreateCopyJob(), &ICopyJob::put_Xml, L"<x/>"), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"CopyJob element is missing.");
}
