#pragma once

#include "tests/support/ComClient.h"
#include "tests/support/TestFolder.h"

#include <string>

/// One test of the log: an empty configuration key and a folder for the log file. Unloads the library before
/// and after, because it reads the key when it is loaded. The destructor restores the key; after an
/// interrupted test the next one does.
class LogSession {
public:
    LogSession();
    ~LogSession();
    LogSession(const LogSession&) = delete;
    LogSession& operator=(const LogSession&) = delete;

    void Put(const wchar_t* name, std::uint32_t number);
    void Put(const wchar_t* name, const std::wstring& text, DWORD type = REG_SZ);
    /// Turns the log on, with the session's file and these header parts.
    void Enable(std::uint32_t options = 0);

    const TestFolder& Folder() const { return m_folder; }
    std::wstring Path() const { return m_folder.File(L"a.log"); }
    /// The text added to the file since the last call; empty without a file.
    std::wstring TakeText();
    /// Whether the log's key exists.
    static bool KeyIsThere();
    /// Unloads the library; the next created object loads it again. Fails while an object lives.
    static void Unload();

private:
    TestFolder m_folder;
    HKEY m_key = nullptr;
    std::size_t m_taken = 0;
};

/// A call that fails with the one line "[CCopyJobImpl::put_Xml] Exception: CopyJob element is missing.".
void FailOnce();
/// The line of this call in the file.
constexpr wchar_t FailedOnce[] = L"[CCopyJobImpl::put_Xml] Exception: CopyJob element is missing.\r\n";
