#pragma once

#include "common/QxTHandle.h"

#include <string>

#include <windows.h>

/// A new, empty folder; the destructor deletes it with its files.
class TestFolder {
public:
    TestFolder() {
        wchar_t temp[MAX_PATH + 1];
        GetTempPathW(MAX_PATH + 1, temp);
        wchar_t name[MAX_PATH];
        GetTempFileNameW(temp, L"job", 0, name);
        DeleteFileW(name);
        CreateDirectoryW(name, nullptr);
        m_path = name;
    }
    ~TestFolder() {
        WIN32_FIND_DATAW found;
        const HANDLE search = FindFirstFileW(File(L"*").c_str(), &found);
        do {
            SetFileAttributesW(File(found.cFileName).c_str(), FILE_ATTRIBUTE_NORMAL);
            DeleteFileW(File(found.cFileName).c_str());
        } while (FindNextFileW(search, &found));
        FindClose(search);
        RemoveDirectoryW(m_path.c_str());
    }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::wstring File(const wchar_t* name) const { return m_path + L"\\" + name; }

private:
    std::wstring m_path;
};

inline bool FileExists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// The file's bytes as UTF-16LE text; an error text if the file is unreadable or has an odd size.
inline std::wstring FileText(const std::wstring& path) {
    const QxKernelHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                          OPEN_EXISTING, 0, nullptr));
    const DWORD size = GetFileSize(file.Get(), nullptr);
    std::wstring text(size / sizeof(wchar_t), L'\0');
    DWORD read = 0;
    if (!file.IsOpen() || size % 2 != 0 || !ReadFile(file.Get(), text.data(), size, &read, nullptr) ||
        read != size)
        return L"<not readable>";
    return text;
}
