#include "common/log/PlainFile.h"
#include "common/log/QxFileLog.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/TestFolder.h"

#include <catch2/catch.hpp>

#include <cwchar>
#include <filesystem>
#include <optional>

// The log follows links in its path, but is not written if the file itself is a link.

namespace {

/// A folder and a link to it. Under Wine, which cannot create links, the environment names a folder with
/// both.
class LinkedFolder {
public:
    LinkedFolder() {
        if (const wchar_t* prepared = _wgetenv(L"JOBOBJECTS_LINKED_FOLDER")) {
            m_base = prepared;
            return;
        }
        m_own.emplace();
        m_base = m_own->File(L"");
        m_base.pop_back();
        CreateDirectoryW(Plain().c_str(), nullptr);
        // A junction, which Windows creates without rights, unlike a symlink.
        REQUIRE(_wsystem((L"mklink /J \"" + Linked() + L"\" \"" + Plain() + L"\" >nul").c_str()) == 0);
    }
    LinkedFolder(const LinkedFolder&) = delete;
    LinkedFolder& operator=(const LinkedFolder&) = delete;
    ~LinkedFolder() {
        if (!m_own)
            return;
        RemoveDirectoryW(Linked().c_str());
        std::error_code ignored;
        std::filesystem::remove_all(Plain(), ignored);
    }

    std::wstring Linked() const { return m_base + L"\\linked"; }
    std::wstring Plain() const { return m_base + L"\\plain"; }

private:
    std::optional<TestFolder> m_own;
    std::wstring m_base;
};

void WriteLine(const std::wstring& path, std::uint32_t maxFileSize = 0) {
    const QxLogPtr log(new QxFileLog(path, maxFileSize));
    log->Write(L"line\n");
}

/// Deletes the file of an earlier run and returns its path.
std::wstring NewName(const std::wstring& path) {
    DeleteFileW(path.c_str());
    REQUIRE(!FileExists(path));
    return path;
}

DWORD openFlags = 0;
decltype(&CreateFileW) createFile = nullptr;

HANDLE WINAPI NoteFlags(const wchar_t* name, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                        DWORD creation, DWORD flags, HANDLE like) {
    openFlags = flags;
    return createFile(name, access, sharing, security, creation, flags, like);
}

decltype(&GetFileInformationByHandle) fileInformation = nullptr;

DWORD reportedTag = 0;

/// Reports every file as a reparse point.
BOOL WINAPI ReportReparsePoint(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
    const BOOL result = fileInformation(file, information);
    information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return result;
}

BOOL WINAPI ReportTag(HANDLE, FILE_INFO_BY_HANDLE_CLASS, void* information, DWORD) {
    *static_cast<FILE_ATTRIBUTE_TAG_INFO*>(information) = {FILE_ATTRIBUTE_REPARSE_POINT, reportedTag};
    return TRUE;
}

BOOL WINAPI FailTag(HANDLE, FILE_INFO_BY_HANDLE_CLASS, void*, DWORD) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

BOOL WINAPI FailInformation(HANDLE, BY_HANDLE_FILE_INFORMATION*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return FALSE;
}

DWORD WINAPI HideAttributes(const wchar_t*) {
    SetLastError(ERROR_ACCESS_DENIED);
    return INVALID_FILE_ATTRIBUTES;
}

template<class Function>
void* Address(Function function) {
    return reinterpret_cast<void*>(function);
}

/// During its lifetime, every file is a reparse point, with the tag that the given function reports.
struct ReparsePoints {
    explicit ReparsePoints(decltype(&ReportTag) reportTag)
        : attributes(GetModuleHandleW(nullptr), "GetFileInformationByHandle", Address(ReportReparsePoint)),
          tag(GetModuleHandleW(nullptr), "GetFileInformationByHandleEx", Address(reportTag)) {
        fileInformation = reinterpret_cast<decltype(fileInformation)>(attributes.Original());
    }
    ImportPatch attributes, tag;
};

std::wstring FullPath(const std::wstring& path) {
    wchar_t full[MAX_PATH];
    REQUIRE(GetFullPathNameW(path.c_str(), MAX_PATH, full, nullptr) < MAX_PATH);
    return full;
}

} // namespace

TEST_CASE("FileLog_on_a_drive_whose_root_is_a_reparse_point_is_written") {
    // The build's drive must have such a root; otherwise the test proves nothing.
    const LinkedFolder folder;
    const std::wstring path = FullPath(NewName(folder.Plain() + L"\\plain.log"));
    REQUIRE((GetFileAttributesW(path.substr(0, 3).c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0);
    for (const std::wstring& name : {path, L"\\\\?\\" + path}) {
        NewName(path);
        WriteLine(name);
        CHECK(FileText(path) == L"line\r\n");
    }
}

TEST_CASE("FileLog_below_a_folder_link_is_written") {
    const LinkedFolder folder;
    REQUIRE((GetFileAttributesW(folder.Linked().c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0);
    CreateDirectoryW((folder.Plain() + L"\\inner").c_str(), nullptr);
    for (const wchar_t* name : {L"\\linked.log", L"/linked.log", L"\\inner\\linked.log"}) {
        const std::wstring target = NewName(folder.Plain() + name);
        WriteLine(folder.Linked() + name);
        CHECK(FileText(target) == L"line\r\n");
    }
}

TEST_CASE("FileLog_below_a_folder_link_is_rotated") {
    const LinkedFolder folder;
    const std::wstring target = NewName(folder.Plain() + L"\\grown.log");
    const std::wstring backup = NewName(target + L".bak");
    const QxLogPtr log(new QxFileLog(folder.Linked() + L"\\grown.log", 1));
    log->Write(std::wstring((1 << 19) - 1, L'x') + L"\n");
    CHECK(FileExists(backup));
    CHECK(!FileExists(target));
}

TEST_CASE("FileLog_below_a_folder_with_unreadable_attributes_is_written") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "GetFileAttributesW", Address(HideAttributes));
        WriteLine(path);
    }
    CHECK(FileText(path) == L"line\r\n");
}

TEST_CASE("FileLog_with_a_second_hard_link_is_not_written_until_that_is_deleted") {
    const TestFolder folder;
    const std::wstring other = folder.File(L"other.txt"), path = folder.File(L"test.log");
    WriteLine(other);
    REQUIRE(CreateHardLinkW(path.c_str(), other.c_str(), nullptr));
    const QxLogPtr log(new QxFileLog(path, 0));
    log->Write(L"refused\n");
    CHECK(FileText(other) == L"line\r\n");
    REQUIRE(DeleteFileW(other.c_str()));
    log->Write(L"written\n");
    CHECK(FileText(path) == L"line\r\nwritten\r\n");
}

TEST_CASE("FileLog_open_does_not_follow_symlinks") {
    const TestFolder folder;
    const ImportPatch patch(GetModuleHandleW(nullptr), "CreateFileW", Address(NoteFlags));
    createFile = reinterpret_cast<decltype(createFile)>(patch.Original());
    openFlags = 0;
    WriteLine(folder.File(L"test.log"));
    CHECK((openFlags & FILE_FLAG_OPEN_REPARSE_POINT) != 0);
}

TEST_CASE("FileLog_that_is_a_symlink_is_not_written") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    {
        const ReparsePoints links(ReportTag);
        reportedTag = IO_REPARSE_TAG_SYMLINK;
        WriteLine(path);
        CHECK(FileText(path).empty());
        CHECK_FALSE(OpenPlainFile(path, 0, OPEN_EXISTING));
        CHECK(GetLastError() == ERROR_CANT_ACCESS_FILE);
    }
    WriteLine(path);
    CHECK(FileText(path) == L"line\r\n");
}

TEST_CASE("FileLog_reparse_point_other_than_a_link_is_followed") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    const ReparsePoints storage(ReportTag);
    reportedTag = IO_REPARSE_TAG_DEDUP;
    const ImportPatch patch(GetModuleHandleW(nullptr), "CreateFileW", Address(NoteFlags));
    createFile = reinterpret_cast<decltype(createFile)>(patch.Original());
    WriteLine(path);
    CHECK((openFlags & FILE_FLAG_OPEN_REPARSE_POINT) == 0);
    CHECK(FileText(path) == L"line\r\n");
}

TEST_CASE("FileLog_with_unknown_link_status_is_not_written") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "GetFileInformationByHandle",
                                Address(FailInformation));
        WriteLine(path);
        CHECK(FileText(path).empty());
    }
    const ReparsePoints unknown(FailTag);
    WriteLine(path);
    CHECK(FileText(path).empty());
}

TEST_CASE("PlainFile_each_problem_has_a_sentence") {
    CHECK(PlainFileProblem(ERROR_CANT_ACCESS_FILE) == L"It is a symbolic link or has a second name.");
    CHECK(PlainFileProblem(ERROR_ACCESS_DENIED) == QxMisc::GetSystemMessage(ERROR_ACCESS_DENIED));
    CHECK(PlainFileProblem(0xE0001234) == L"Error 3758101044.");
}
