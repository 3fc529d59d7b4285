#include "Registry.h"

#include "common/QxRegistryHdl.h"

bool KeyExists(HKEY root, const std::wstring& key, REGSAM view) {
    return QxRegistryHdl().Open(root, key.c_str(), KEY_READ | view);
}

bool ValueExists(HKEY root, const std::wstring& key, const wchar_t* name) {
    return RegGetValueW(root, key.c_str(), name, RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

std::optional<std::wstring> ReadText(HKEY root, const std::wstring& key, const wchar_t* name, REGSAM view) {
    QxRegistryHdl handle;
    QxString text;
    if (!handle.Open(root, key.c_str(), KEY_READ | view) || !handle.ReadString(name, text))
        return std::nullopt;
    return std::wstring(text.view());
}

std::optional<DWORD> ReadNumber(HKEY root, const std::wstring& key, const wchar_t* name) {
    QxRegistryHdl handle;
    std::uint32_t value = 0;
    if (!handle.Open(root, key.c_str(), KEY_READ) || !handle.ReadNumber(name, value))
        return std::nullopt;
    return value;
}
