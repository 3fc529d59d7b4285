#pragma once

#include <cstdint>
#include <string>

#include <windows.h>

/// A key under HKEY_CURRENT_USER, empty even after an aborted test; the destructor deletes it with its
/// subkeys.
class TestKey {
public:
    explicit TestKey(const wchar_t* path) : m_path(path) {
        RegDeleteTreeW(HKEY_CURRENT_USER, path);
        RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &m_key, nullptr);
    }
    ~TestKey() {
        RegCloseKey(m_key);
        RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    }
    TestKey(const TestKey&) = delete;
    TestKey& operator=(const TestKey&) = delete;

    bool Put(const wchar_t* name, DWORD type, const void* data, std::size_t size) {
        return RegSetValueExW(m_key, name, 0, type, static_cast<const BYTE*>(data),
                              static_cast<DWORD>(size)) == ERROR_SUCCESS;
    }
    bool Put(const wchar_t* name, std::uint32_t number) {
        return Put(name, REG_DWORD, &number, sizeof(number));
    }
    bool Put(const wchar_t* name, const std::wstring& text, DWORD type = REG_SZ) {
        return Put(name, type, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    bool Remove(const wchar_t* name) { return RegDeleteValueW(m_key, name) == ERROR_SUCCESS; }

private:
    std::wstring m_path;
    HKEY m_key = nullptr;
};
