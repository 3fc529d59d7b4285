#include "Registry.h"

#include "common/QxRegistryHdl.h"

#include <vector>

bool KeyExists(HKEY root, const std::wstring& key) {
    return QxRegistryHdl().Open(root, key.c_str(), KEY_READ);
}

bool ValueExists(HKEY root, const std::wstring& key, const wchar_t* name) {
    return RegGetValueW(root, key.c_str(), name, RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

std::optional<std::wstring> ReadText(HKEY root, const std::wstring& key, const wchar_t* name) {
    // No expansion of environment variables: the library does none either.
    constexpr DWORD texts = RRF_RT_REG_SZ | RRF_RT_REG_EXPAND_SZ | RRF_NOEXPAND;
    DWORD size = 0;
    if (RegGetValueW(root, key.c_str(), name, texts, nullptr, nullptr, &size) != ERROR_SUCCESS)
        return std::nullopt;
    std::vector<wchar_t> text(size / sizeof(wchar_t) + 1);
    if (RegGetValueW(root, key.c_str(), name, texts, nullptr, text.data(), &size) != ERROR_SUCCESS)
        return std::nullopt;
    return std::wstring(text.data());
}

std::optional<DWORD> ReadNumber(HKEY root, const std::wstring& key, const wchar_t* name) {
    DWORD value = 0;
    DWORD size = sizeof(value);
    if (RegGetValueW(root, key.c_str(), name, RRF_RT_REG_DWORD, nullptr, &value, &size) != ERROR_SUCCESS)
        return std::nullopt;
    return value;
}
