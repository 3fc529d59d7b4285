#pragma once

#include "tests/support/ComClient.h"
#include "tests/support/TestFolder.h"

#include <string>

/// One test of the log: the log's key, empty at first, and a folder for the log's file. The library reads the
/// key when it is loaded, so it is unloaded before and afterwards. The key is put back as it was,
/// by the next test where one was cut off.
class LogSession {
public:
    LogSession();
    ~LogSession();
    LogSession(const LogSession&) = delete;
    LogSession& operator=(const LogSession&) = delete;

    void Put(const wchar_t* name, std::uint32_t number);
    void Put(const wchar_t* name, const std::wstring& text, DWORD type = REG_SZ);
    /// The log is on and writes to the session's file, with these parts of the header.
    void Enable(std::uint32_t options = 0);

    const TestFolder& Folder() const { return m_folder; }
    std::wstring Path() const { return m_folder.File(L"a.log"); }
    /// What the file holds beyond what was taken before; empty as long as there is no file.
    std::wstring TakeText();
    /// Whether the machine has a key of the log's.
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
/// The call's line, as it stands in the file.
constexpr wchar_t failedOnce[] = L"[CCopyJobImpl::put_Xml] Exception: CopyJob element is missing.\r\n";
