#include "TestFolder.h"
#include "common/log/LinkFreeFile.h"
#include "common/log/QxFileLog.h"
#include "tests/com/ImportPatch.h"

#include <catch2/catch.hpp>

// The log does not follow a link out of its path.

namespace {

/// A link to a folder, made when the tests were configured, and the folder itself.
const std::wstring linkedFolder = L"" LINKED_FOLDER "\\linked", plainFolder = L"" LINKED_FOLDER "\\plain";

void WriteLine(const std::wstring& path, std::uint32_t maxFileSize = 0) {
    const QxLogPtr log(new QxFileLog(path, maxFileSize));
    log->Write(L"line\n");
}

/// The file's name without what earlier runs left.
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

BOOL WINAPI TellOfLink(HANDLE file, BY_HANDLE_FILE_INFORMATION* information) {
    const BOOL result = fileInformation(file, information);
    information->dwFileAttributes |= FILE_ATTRIBUTE_REPARSE_POINT;
    return result;
}

BOOL WINAPI TellNothing(HANDLE, BY_HANDLE_FILE_INFORMATION*) {
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

} // namespace

TEST_CASE("FileLog_in_a_folder_without_links_is_written") {
    const std::wstring path = NewName(plainFolder + L"\\plain.log");
    WriteLine(path);
    CHECK(FileText(path) == L"line\r\n");
}

TEST_CASE("FileLog_behind_a_link_to_a_folder_is_not_created") {
    REQUIRE((GetFileAttributesW(linkedFolder.c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0);
    const std::wstring behind = NewName(plainFolder + L"\\linked.log");
    for (const wchar_t* separator : {L"\\", L"/"})
        WriteLine(linkedFolder + separator + L"linked.log");
    CHECK(!FileExists(behind));
}

TEST_CASE("FileLog_below_a_folder_behind_a_link_is_not_created") {
    CreateDirectoryW((plainFolder + L"\\inner").c_str(), nullptr);
    const std::wstring behind = NewName(plainFolder + L"\\inner\\linked.log");
    WriteLine(linkedFolder + L"\\inner\\linked.log");
    CHECK(!FileExists(behind));
}

TEST_CASE("FileLog_behind_a_link_to_a_folder_is_neither_written_nor_rotated") {
    const std::wstring behind = NewName(plainFolder + L"\\grown.log");
    const std::wstring backup = NewName(behind + L".bak");
    const std::wstring text((1 << 19) - 1, L'x');
    const QxLogPtr log(new QxFileLog(behind, 2));
    log->Write(text + L"\n");
    const std::size_t written = FileText(behind).size();
    WriteLine(linkedFolder + L"\\grown.log", 1);
    CHECK(FileText(behind).size() == written);
    CHECK(!FileExists(backup));
}

TEST_CASE("FileLog_with_a_second_name_elsewhere_is_not_written_until_that_goes") {
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

TEST_CASE("FileLog_is_opened_itself_where_it_might_be_a_link") {
    const TestFolder folder;
    const ImportPatch patch(GetModuleHandleW(nullptr), "CreateFileW", Address(NoteFlags));
    createFile = reinterpret_cast<decltype(createFile)>(patch.Original());
    openFlags = 0;
    WriteLine(folder.File(L"test.log"));
    CHECK((openFlags & FILE_FLAG_OPEN_REPARSE_POINT) != 0);
}

TEST_CASE("FileLog_that_is_a_link_itself_is_not_written") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "GetFileInformationByHandle", Address(TellOfLink));
        fileInformation = reinterpret_cast<decltype(fileInformation)>(patch.Original());
        WriteLine(path);
        CHECK(FileText(path).empty());
        CHECK(!OpenFileWithoutLinks(path, 0, OPEN_EXISTING).IsOpen());
        CHECK(GetLastError() == ERROR_CANT_ACCESS_FILE);
    }
    WriteLine(path);
    CHECK(FileText(path) == L"line\r\n");
}

TEST_CASE("FileLog_of_which_the_system_does_not_say_whether_it_is_a_link_is_not_written") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    const ImportPatch patch(GetModuleHandleW(nullptr), "GetFileInformationByHandle", Address(TellNothing));
    WriteLine(path);
    CHECK(FileText(path).empty());
}

TEST_CASE("FileLog_in_a_folder_that_hides_whether_it_is_a_link_is_not_created") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"test.log");
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "GetFileAttributesW", Address(HideAttributes));
        WriteLine(path);
    }
    CHECK(!FileExists(path));
}
