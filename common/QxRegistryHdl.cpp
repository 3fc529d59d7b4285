#include "QxRegistryHdl.h"

#include "QxSystem.h"
#include "common/log/QxLogger.h"

#include <cwchar>
#include <string>

bool QxRegistryHdl::Check(LSTATUS status) noexcept {
    if (status == ERROR_SUCCESS)
        return true;
    m_lastError = static_cast<std::uint32_t>(status);
    return false;
}

bool QxRegistryHdl::Open(HKEY rootKey, const wchar_t* subkey, REGSAM access) noexcept {
    Close();
    HKEY key = nullptr;
    if (!Check(RegOpenKeyExW(rootKey, subkey, 0, access, &key)))
        return false;
    m_key = key;
    return true;
}

bool QxRegistryHdl::Create(HKEY rootKey, const wchar_t* subkey) noexcept {
    Close();
    HKEY key = nullptr;
    if (!Check(RegCreateKeyExW(rootKey, subkey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr)))
        return false;
    m_key = key;
    return true;
}

void QxRegistryHdl::Close() noexcept {
    if (!m_key)
        return;
    if (!Check(RegCloseKey(m_key)))
        QxMisc::LogSystemError(LogUtility, L"[QxRegistryHdl::Close] ", m_lastError);
    m_key = nullptr;
}

bool QxRegistryHdl::ReadNumber(const wchar_t* name, std::uint32_t& value) noexcept {
    DWORD type = 0, number = 0, size = sizeof(number);
    if (!Check(RegQueryValueExW(m_key, name, nullptr, &type, reinterpret_cast<BYTE*>(&number), &size)))
        return false;
    if (type != REG_DWORD || size != sizeof(number))
        return Check(ERROR_UNSUPPORTED_TYPE);
    value = number;
    return true;
}

bool QxRegistryHdl::ReadBool(const wchar_t* name, bool& value) noexcept {
    std::uint32_t number = 0;
    if (!ReadNumber(name, number))
        return false;
    value = number != 0;
    return true;
}

bool QxRegistryHdl::ReadString(const wchar_t* name, QxString& value) {
    DWORD type = 0, size = 0;
    if (!Check(RegQueryValueExW(m_key, name, nullptr, &type, nullptr, &size)))
        return false;
    // One extra character: the registry does not guarantee a terminating NUL.
    std::wstring text(size / sizeof(wchar_t) + 1, L'\0');
    if (!Check(RegQueryValueExW(m_key, name, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &size)))
        return false;
    if (type != REG_SZ && type != REG_EXPAND_SZ)
        return Check(ERROR_UNSUPPORTED_TYPE);
    text.resize(size / sizeof(wchar_t));
    value = QxString(std::wstring_view(text).substr(0, text.find(L'\0')));
    return true;
}

bool QxRegistryHdl::WriteString(const wchar_t* name, const wchar_t* value) noexcept {
    return Check(RegSetValueExW(m_key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value),
                                static_cast<DWORD>((std::wcslen(value) + 1) * sizeof(wchar_t))));
}
