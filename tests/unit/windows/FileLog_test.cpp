#include "common/log/PlainFile.h"
#include "common/log/QxFileLog.h"
#include "common/log/RenameMark.h"
#include "tests/support/DebuggerOutput.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/TestFolder.h"

#include <catch2/catch.hpp>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t UnitsPerMiB = 1024 * 1024 / sizeof(wchar_t);

QxLogPtr NewLog(const std::wstring& path, std::uint32_t maxFileSize = 0) {
    return QxLogPtr(new QxFileLog(path, maxFileSize));
}

/// A line that takes this many UTF-16 units in the file, including its line end.
std::wstring LineOfUnits(std::size_t units) {
    return std::wstring(units - 2, L'x') + L"\n";
}

/// The text as the debugger gets it.
std::string Narrow(const std::wstring& text) {
    char narrow[512] = {};
    WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, narrow, sizeof(narrow), nullptr, nullptr);
    return narrow;
}

constexpr int Writers = 4, LinesPerWriter = 100;

struct Appender {
    std::wstring path;
    wchar_t letter;
};

DWORD WINAPI AppendLines(void* parameter) {
    const auto& appender = *static_cast<Appender*>(parameter);
    const QxLogPtr log = NewLog(appender.path);
    for (int i = 0; i < LinesPerWriter; ++i)
        log->Write(appender.letter + std::to_wstring(i) + L"\n");
    return 0;
}

std::vector<std::wstring> LinesOf(const std::wstring& text) {
    std::vector<std::wstring> lines;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find(L"\r\n", start)) != std::wstring::npos; start = end + 2)
        lines.push_back(text.substr(start, end - start));
    return lines;
}

/// Holds the append lock, like a process stopped in the middle of a write.
FileHandle HoldAppendLock(const std::wstring& path) {
    FileHandle file = OwnedFile(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                            nullptr, OPEN_ALWAYS, 0, nullptr));
    OVERLAPPED position{};
    position.OffsetHigh = 0x7FFFFFFF;
    REQUIRE(LockFileEx(file.get(), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &position));
    return file;
}

/// Opens the file like another program that shares it only in this way.
FileHandle KeepFileFromOthers(const std::wstring& path, DWORD sharing = 0) {
    FileHandle file = OwnedFile(
        CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, sharing, nullptr, OPEN_ALWAYS, 0, nullptr));
    REQUIRE(file);
    return file;
}

/// The handles of a process that is renaming the file.
struct Renaming {
    FileHandle exclusive;
    FileHandle mark;

    explicit Renaming(const std::wstring& path) {
        exclusive = KeepFileFromOthers(path, FILE_SHARE_READ | FILE_SHARE_DELETE);
        mark = OwnedFile(CreateFileW(path.c_str(), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                     OPEN_EXISTING, 0, nullptr));
        OVERLAPPED position{};
        position.OffsetHigh = 0x7FFFFFFE;
        REQUIRE(LockFileEx(mark.get(), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &position));
    }
    void End() {
        exclusive.reset();
        mark.reset();
    }
};

DWORD WINAPI EndAfterAWhile(void* renaming) {
    Sleep(200);
    static_cast<Renaming*>(renaming)->End();
    return 0;
}

/// Milliseconds that the call takes.
template<class Call>
DWORD Duration(Call call) {
    const DWORD start = GetTickCount();
    call();
    return GetTickCount() - start;
}

/// Milliseconds that no caller notices on a busy machine.
constexpr DWORD Unnoticed = 500;

/// If set, two other processes act as soon as this one has closed this file to rename it: the first renames
/// it, without a mark because it may not read the file; the second starts a new file.
BOOL WINAPI RefuseToWrite(HANDLE, const void*, DWORD, DWORD*, OVERLAPPED*) {
    SetLastError(ERROR_WRITE_FAULT);
    return FALSE;
}

bool refusesToOpen = false;
decltype(&CreateFileW) createFile = nullptr;

/// Like the system while another process renames the file.
HANDLE WINAPI RefuseToOpenOnce(const wchar_t* path, DWORD access, DWORD sharing,
                               SECURITY_ATTRIBUTES* security, DWORD creation, DWORD flags, HANDLE model) {
    if (std::exchange(refusesToOpen, false)) {
        SetLastError(ERROR_SHARING_VIOLATION);
        return INVALID_HANDLE_VALUE;
    }
    return createFile(path, access, sharing, security, creation, flags, model);
}

std::wstring othersPath;
BOOL(WINAPI* closeHandle)(HANDLE) = nullptr;

BOOL WINAPI CloseAndLetOthersWrite(HANDLE handle) {
    const BOOL closed = closeHandle(handle);
    if (const std::wstring path = std::exchange(othersPath, {}); !path.empty()) {
        MoveFileExW(path.c_str(), (path + L".bak").c_str(), MOVEFILE_REPLACE_EXISTING);
        NewLog(path, 1)->Write(L"first line\n");
    }
    return closed;
}

bool markSeen = false;
decltype(&MoveFileExW) moveFile = nullptr;

BOOL WINAPI NoteMarkAndMove(const wchar_t* from, const wchar_t* to, DWORD flags) {
    markSeen = RenameMark::IsSetOn(from);
    return moveFile(from, to, flags);
}

} // namespace

TEST_CASE("FileLog_has_the_name_of_its_file_and_opens_it_at_the_first_write") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path);
    CHECK(log->Name() == std::wstring_view(path));
    CHECK_FALSE(FileExists(path));
    log->Write(L"x\n");
    CHECK(FileExists(path));
}

TEST_CASE("FileLog_lines_are_utf16_with_crlf_and_no_mark") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path);
    log->Write(L"\x00E4\x20AC\n");
    log->Write(L"one\n\ntwo\r\nnot written");
    log->Write(L"no line end");
    log->Write(L"");
    CHECK(FileText(path) == L"\x00E4\x20AC\r\none\r\n\r\ntwo\r\r\n");
}

TEST_CASE("FileLog_existing_contents_are_kept") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    NewLog(path)->Write(L"first\n");
    NewLog(path)->Write(L"second\n");
    CHECK(FileText(path) == L"first\r\nsecond\r\n");
}

TEST_CASE("FileLog_file_can_be_read_and_written_but_not_deleted_while_open") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path);
    log->Write(L"line\n");
    CHECK(FileText(path) == L"line\r\n");
    const QxKernelHandle other(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                           nullptr, OPEN_EXISTING, 0, nullptr));
    CHECK(other.IsOpen());
    CHECK_FALSE(DeleteFileW(path.c_str()));
}

TEST_CASE("FileLog_destroyed_sink_closes_its_file") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    NewLog(path)->Write(L"line\n");
    CHECK(DeleteFileW(path.c_str()));
}

TEST_CASE("FileLog_rotates_when_the_size_is_reached") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log"), backup = path + L".bak";
    const QxLogPtr log = NewLog(path, 1);
    log->Write(LineOfUnits(UnitsPerMiB - 3));
    CHECK_FALSE(FileExists(backup));
    log->Write(L"x\n"); // exactly the size
    CHECK(FileExists(backup));
    CHECK_FALSE(FileExists(path));
    CHECK(FileText(backup).size() == UnitsPerMiB);
    log->Write(L"next\n");
    CHECK(FileText(path) == L"next\r\n");
}

TEST_CASE("FileLog_one_unit_below_the_size_does_not_rotate") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path, 1);
    log->Write(LineOfUnits(UnitsPerMiB - 1));
    CHECK_FALSE(FileExists(path + L".bak"));
}

TEST_CASE("FileLog_size_zero_never_rotates") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path, 0);
    log->Write(LineOfUnits(UnitsPerMiB * 3));
    CHECK(FileExists(path));
    CHECK_FALSE(FileExists(path + L".bak"));
}

namespace {

decltype(&SetFileAttributesW) setFileAttributes = nullptr;
DWORD givenAttributes = 0;

BOOL WINAPI NoteAttributes(const wchar_t* path, DWORD attributes) {
    givenAttributes = attributes;
    return setFileAttributes(path, attributes);
}

} // namespace

// Wine replaces a read-only file, too.
TEST_CASE("FileLog_rotation_replaces_a_read_only_backup") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log"), backup = path + L".bak";
    NewLog(backup)->Write(L"old\n");
    REQUIRE(SetFileAttributesW(backup.c_str(), FILE_ATTRIBUTE_READONLY));
    const DWORD before = GetFileAttributesW(backup.c_str());
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "SetFileAttributesW",
                                reinterpret_cast<void*>(NoteAttributes));
        setFileAttributes = reinterpret_cast<decltype(setFileAttributes)>(patch.Original());
        NewLog(path, 1)->Write(LineOfUnits(UnitsPerMiB));
    }
    CHECK(givenAttributes == (before & ~DWORD{FILE_ATTRIBUTE_READONLY}));
    CHECK_FALSE(FileExists(path));
    CHECK(FileText(backup).size() == UnitsPerMiB);
}

TEST_CASE("FileLog_rotation_blocked_by_another_process_happens_later") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log"), backup = path + L".bak";
    const QxLogPtr log = NewLog(path, 1);
    QxLogPtr other = NewLog(path, 0);
    other->Write(L"other\n");
    log->Write(LineOfUnits(UnitsPerMiB));
    log->Write(L"still the same file\n");
    CHECK_FALSE(FileExists(backup));
    CHECK(FileText(path).size() == 7 + UnitsPerMiB + 21);
    other->Write(L"other again\n");

    other.reset();
    log->Write(L"last\n");
    CHECK_FALSE(FileExists(path));
    const std::wstring kept = FileText(backup);
    CHECK(kept.substr(kept.size() - 19) == L"other again\r\nlast\r\n");
}

TEST_CASE("FileLog_unwritable_path_loses_the_line_and_is_tried_again") {
    const TestFolder folder;
    const std::wstring missing = folder.File(L"missing"), path = missing + L"\\a.log";
    {
        const QxLogPtr log = NewLog(path);
        log->Write(L"lost\n");
        CHECK_FALSE(FileExists(path));
        REQUIRE(CreateDirectoryW(missing.c_str(), nullptr));
        log->Write(L"kept\n");
        CHECK(FileText(path) == L"kept\r\n");
    }
    CHECK(DeleteFileW(path.c_str()));
    CHECK(RemoveDirectoryW(missing.c_str()));
}

TEST_CASE("FileLog_concurrent_writers_lose_and_mix_no_line") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    Appender appenders[Writers];
    HANDLE threads[Writers];
    for (int i = 0; i < Writers; ++i) {
        appenders[i] = {path, static_cast<wchar_t>(L'a' + i)};
        threads[i] = CreateThread(nullptr, 0, AppendLines, &appenders[i], 0, nullptr);
        REQUIRE(threads[i] != nullptr);
    }
    REQUIRE(WaitForMultipleObjects(Writers, threads, TRUE, 60000) == WAIT_OBJECT_0);
    for (const HANDLE thread : threads)
        CloseHandle(thread);
    const std::vector<std::wstring> lines = LinesOf(FileText(path));
    CHECK(lines.size() == Writers * LinesPerWriter);
    const std::set<std::wstring> once(lines.begin(), lines.end());
    CHECK(once.size() == Writers * LinesPerWriter);
    for (const Appender& appender : appenders)
        for (int i = 0; i < LinesPerWriter; ++i)
            if (once.count(appender.letter + std::to_wstring(i)) != 1)
                FAIL("line " << i << " of a writer is missing");
}

TEST_CASE("FileLog_stopped_writer_delays_one_line_and_hangs_no_writer") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    FileHandle holder = HoldAppendLock(path);
    const QxLogPtr log = NewLog(path);
    const DWORD start = GetTickCount();
    log->Write(L"lost\n");
    CHECK(GetTickCount() - start < 10000);
    const DWORD second = GetTickCount();
    log->Write(L"lost too\n");
    CHECK(GetTickCount() - second < 1000);
    CHECK(FileText(path).empty());
    holder.reset();
    log->Write(L"kept\n");
    CHECK(FileText(path) == L"kept\r\n");
}

TEST_CASE("FileLog_writer_stopped_in_the_queue_delays_one_line_and_loses_none") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    // Like a process stopped while it waits: it holds a place in the queue, but not the append lock.
    FileHandle holder = OwnedFile(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                              nullptr, OPEN_ALWAYS, 0, nullptr));
    OVERLAPPED place{};
    place.OffsetHigh = 0x7FFFFFFF;
    place.Offset = 1;
    REQUIRE(LockFileEx(holder.get(), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &place));
    const QxLogPtr log = NewLog(path);
    CHECK(Duration([&] { log->Write(L"delayed\n"); }) < 10000);
    CHECK(Duration([&] { log->Write(L"not delayed\n"); }) < 1000);
    holder.reset();
    log->Write(L"later\n");
    CHECK(FileText(path) == L"delayed\r\nnot delayed\r\nlater\r\n");
}

TEST_CASE("FileLog_line_written_while_another_process_renames_the_file_is_kept") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path);
    Renaming renaming(path);
    const HANDLE thread = CreateThread(nullptr, 0, EndAfterAWhile, &renaming, 0, nullptr);
    REQUIRE(thread != nullptr);
    log->Write(L"kept\n");
    REQUIRE(WaitForSingleObject(thread, 60000) == WAIT_OBJECT_0);
    CloseHandle(thread);
    CHECK(FileText(path) == L"kept\r\n");
}

TEST_CASE("FileLog_line_written_when_a_rename_has_just_ended_is_kept") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    NewLog(path)->Write(L"first\n");
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "CreateFileW",
                                reinterpret_cast<void*>(RefuseToOpenOnce));
        createFile = reinterpret_cast<decltype(createFile)>(patch.Original());
        refusesToOpen = true;
        NewLog(path)->Write(L"second\n");
    }
    CHECK_FALSE(refusesToOpen);
    CHECK(FileText(path) == L"first\r\nsecond\r\n");
}

TEST_CASE("FileLog_writer_stopped_while_renaming_delays_one_line_and_hangs_no_writer") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log");
    const QxLogPtr log = NewLog(path);
    Renaming renaming(path);
    CHECK(Duration([&] { log->Write(L"lost\n"); }) < 10000);
    CHECK(Duration([&] { log->Write(L"lost too\n"); }) < 1000);
    renaming.End();
    log->Write(L"kept\n");
    CHECK(FileText(path) == L"kept\r\n");
}

TEST_CASE("FileLog_file_not_shared_by_another_program_costs_no_wait") {
    for (const DWORD sharing :
         {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_DELETE}}) {
        INFO(sharing);
        const TestFolder folder;
        const std::wstring path = folder.File(L"a.log");
        FileHandle holder = KeepFileFromOthers(path, sharing);
        const QxLogPtr log = NewLog(path);
        const DebuggerOutput debugger;
        CHECK(Duration([&] { log->Write(L"lost\n"); }) < Unnoticed);
        CHECK(Duration([&] { log->Write(L"lost too\n"); }) < Unnoticed);
        REQUIRE(debugger.lines.size() == 1);
        CHECK(debugger.lines[0].ends_with(Narrow(PlainFileProblem(ERROR_SHARING_VIOLATION))));
        holder.reset();
        log->Write(L"kept\n");
        CHECK(FileText(path) == L"kept\r\n");
    }
}

TEST_CASE("FileLog_marks_the_file_for_other_writers_during_a_rename") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log"), backup = path + L".bak";
    const QxLogPtr log = NewLog(path, 1);
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "MoveFileExW",
                                reinterpret_cast<void*>(NoteMarkAndMove));
        moveFile = reinterpret_cast<decltype(moveFile)>(patch.Original());
        markSeen = false;
        log->Write(LineOfUnits(UnitsPerMiB));
    }
    CHECK(markSeen);
    CHECK(FileExists(backup));
}

TEST_CASE("FileLog_file_marked_by_another_writer_is_not_renamed") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log"), backup = path + L".bak";
    const QxLogPtr log = NewLog(path, 1);
    NewLog(path)->Write(L"first\n");
    const RenameMark mark(path);
    log->Write(LineOfUnits(UnitsPerMiB));
    CHECK_FALSE(FileExists(backup));
}

TEST_CASE("FileLog_unwritable_file_is_reported_once") {
    const TestFolder folder;
    const std::wstring missing = folder.File(L"missing"), path = missing + L"\\a.log";
    DebuggerOutput debugger;
    {
        const QxLogPtr log = NewLog(path);
        for (int i = 0; i < 3; ++i)
            log->Write(L"lost\n");
        REQUIRE(debugger.lines.size() == 1);
        const std::string line = debugger.lines[0];
        CHECK(line.rfind("JobObjects: cannot write the log file '", 0) == 0);
        CHECK(line.find("missing\\a.log'. ") != std::string::npos);
        CHECK(line.back() != ' '); // the reason follows
        REQUIRE(CreateDirectoryW(missing.c_str(), nullptr));
        log->Write(L"kept\n");
        CHECK(debugger.lines.size() == 1);
    }
    CHECK(DeleteFileW(path.c_str()));
    CHECK(RemoveDirectoryW(missing.c_str()));
}

TEST_CASE("FileLog_failure_after_a_success_is_reported_again") {
    const TestFolder folder;
    DebuggerOutput debugger;
    const QxLogPtr log = NewLog(folder.File(L"a.log"));
    for (std::size_t failures = 1; failures <= 2; ++failures) {
        log->Write(L"kept\n");
        const ImportPatch patch(GetModuleHandleW(nullptr), "WriteFile",
                                reinterpret_cast<void*>(RefuseToWrite));
        log->Write(L"lost\n");
        log->Write(L"lost\n");
        CHECK(debugger.lines.size() == failures);
    }
}

TEST_CASE("FileLog_file_just_started_by_another_process_does_not_become_the_backup") {
    const TestFolder folder;
    const std::wstring path = folder.File(L"a.log"), backup = path + L".bak";
    const QxLogPtr log = NewLog(path, 1);
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "CloseHandle",
                                reinterpret_cast<void*>(CloseAndLetOthersWrite));
        closeHandle = reinterpret_cast<decltype(closeHandle)>(patch.Original());
        othersPath = path;
        log->Write(LineOfUnits(UnitsPerMiB));
    }
    CHECK(othersPath.empty());
    CHECK(FileText(backup).size() == UnitsPerMiB);
    CHECK(FileText(path) == L"first line\r\n");
}
