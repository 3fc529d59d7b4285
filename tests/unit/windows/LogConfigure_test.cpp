#include "../CapturedLog.h"
#include "TestKey.h"

#include "common/LogRegistry.h"
#include "tests/support/TestFolder.h"

#include <catch2/catch.hpp>

#include <string>

namespace {

/// One key per process, because tests run in parallel.
const std::wstring BaseKey = L"Software\\JobObjectsLogTest" + std::to_wstring(GetCurrentProcessId());

/// The log's key. Resets the log at both ends of its lifetime.
struct LogKey {
    TestKey base{BaseKey.c_str()};
    TestKey key{(BaseKey + L"\\Log").c_str()};
    TestFolder folder;
    std::wstring path = folder.File(L"a.log");

    LogKey() { QxLogger::Instance().Close(); }
    ~LogKey() { QxLogger::Instance().Close(); }
};

void Configure() {
    ConfigureLog(BaseKey.c_str(), HKEY_CURRENT_USER, KEY_READ);
}

/// The name of the only sink.
std::wstring FileOfLog() {
    std::wstring name;
    QxLogger::Instance().Change([&](LogConfiguration& configuration) {
        REQUIRE(configuration.sinks.size() <= 1);
        for (const LogSink& sink : configuration.sinks)
            name = std::wstring(sink.log->Name());
    });
    return name;
}

} // namespace

TEST_CASE("Configure_reads_every_value") {
    LogKey log;
    log.key.Put(L"SourceName", L"Agent");
    log.key.Put(L"Enabled", 1u);
    log.key.Put(L"Filters", 3u);
    log.key.Put(L"Categories", 0x10001u);
    log.key.Put(L"Types", 5u);
    log.key.Put(L"Level", 6u);
    log.key.Put(L"Options", 56u);
    log.key.Put(L"MaxDataSize", 8u);
    log.key.Put(L"MaxFileSize", 9u);
    log.key.Put(L"OnlyErrorsToFile", 1u);
    log.key.Put(L"FileName", log.path);
    Configure();
    const LogSettings settings = CurrentSettings();
    CHECK(settings.sourceName == L"Agent");
    CHECK(settings.enabled);
    CHECK(settings.filters == 3);
    CHECK(settings.categories == 0x10001);
    CHECK(settings.types == 5);
    CHECK(settings.level == 6);
    CHECK(settings.options == 56);
    CHECK(settings.maxDataSize == 8);
    CHECK(settings.maxFileSize == 9);
    CHECK(settings.onlyErrorsToFile);
    CHECK(FileOfLog() == log.path);

    LogError(LogUtility, L"text %d", 1);
    LogError(LogCom, L"filtered out");
    CHECK(FileText(log.path) == L"[CQx e Agent] text 1\r\n");
}

TEST_CASE("Configure_missing_key_changes_nothing") {
    LogKey log;
    log.key.Put(L"Enabled", 1u);
    log.key.Put(L"FileName", log.path);
    Configure();
    ConfigureLog(L"Software\\JobObjectsNoSuchKey", HKEY_CURRENT_USER, KEY_READ);
    CHECK(CurrentSettings().enabled);
    CHECK(FileOfLog() == log.path);
}

TEST_CASE("Configure_missing_or_wrong_value_leaves_its_field") {
    LogKey log;
    LogSettings before;
    before.sourceName = L"Before";
    before.enabled = true;
    before.filters = 1;
    before.categories = 2;
    before.types = 3;
    before.level = 4;
    before.options = 5;
    before.maxDataSize = 6;
    before.maxFileSize = 7;
    before.onlyErrorsToFile = true;
    QxLogger::Instance().Change([&](LogConfiguration& configuration) { configuration.settings = before; });
    log.key.Put(L"Enabled", L"0");
    log.key.Put(L"SourceName", 5u);
    log.key.Put(L"Types", 8u);
    Configure();
    const LogSettings after = CurrentSettings();
    CHECK(after.sourceName == L"Before");
    CHECK(after.enabled);
    CHECK(after.filters == 1);
    CHECK(after.categories == 2);
    CHECK(after.types == 8);
    CHECK(after.level == 4);
    CHECK(after.options == 5);
    CHECK(after.maxDataSize == 6);
    CHECK(after.maxFileSize == 7);
    CHECK(after.onlyErrorsToFile);
}

TEST_CASE("Configure_again_replaces_and_removes_the_file") {
    LogKey log;
    const std::wstring second = log.folder.File(L"b.log");
    log.key.Put(L"Enabled", 1u);
    log.key.Put(L"FileName", log.path);
    Configure();
    LogError(L"first");
    log.key.Put(L"FileName", second);
    Configure();
    LogError(L"second");
    log.key.Put(L"FileName", L"");
    Configure();
    LogError(L"nowhere");
    CHECK(FileOfLog().empty());
    CHECK(FileText(log.path) == L"first\r\n");
    CHECK(FileText(second) == L"second\r\n");
    CHECK(DeleteFileW(second.c_str())); // no longer open

    log.key.Put(L"FileName", log.path);
    Configure();
    log.key.Remove(L"FileName");
    Configure();
    CHECK(FileOfLog().empty());
}

TEST_CASE("Configure_changed_maximum_size_replaces_the_file_sink") {
    LogKey log;
    log.key.Put(L"Enabled", 1u);
    log.key.Put(L"FileName", log.path);
    Configure();
    LogError(L"%ls", std::wstring(600000, L'x').c_str());
    CHECK_FALSE(FileExists(log.path + L".bak"));
    log.key.Put(L"MaxFileSize", 1u);
    Configure();
    LogError(L"rotates");
    CHECK(FileExists(log.path + L".bak"));
}

TEST_CASE("Configure_unchanged_file_stays_open") {
    LogKey log;
    log.key.Put(L"Enabled", 1u);
    log.key.Put(L"FileName", log.path);
    Configure();
    LogError(L"first");
    Configure();
    CHECK_FALSE(DeleteFileW(log.path.c_str()));
    LogError(L"second");
    CHECK(FileText(log.path) == L"first\r\nsecond\r\n");
}

TEST_CASE("Configure_log_in_a_missing_folder_never_affects_the_caller") {
    LogKey log;
    log.key.Put(L"Enabled", 1u);
    log.key.Put(L"FileName", log.folder.File(L"missing\\a.log"));
    Configure();
    SetLastError(4711);
    LogError(L"lost");
    CHECK(GetLastError() == 4711);
}

namespace {

/// Configures the log repeatedly from the key.
DWORD WINAPI ConfigureOften(void* key) {
    for (int i = 0; i < 200; ++i)
        ConfigureLog(static_cast<const wchar_t*>(key), HKEY_CURRENT_USER, KEY_READ);
    return 0;
}

} // namespace

TEST_CASE("Configure_line_during_concurrent_changes_uses_the_values_of_one_key") {
    LogKey log;
    const std::wstring keys[] = {BaseKey + L"\\A", BaseKey + L"\\B"};
    const std::wstring paths[] = {log.folder.File(L"A.log"), log.folder.File(L"B.log")};
    TestKey outer[] = {TestKey(keys[0].c_str()), TestKey(keys[1].c_str())};
    TestKey inner[] = {TestKey((keys[0] + L"\\Log").c_str()), TestKey((keys[1] + L"\\Log").c_str())};
    HANDLE threads[2];
    for (int i = 0; i < 2; ++i) {
        inner[i].Put(L"Enabled", 1u);
        inner[i].Put(L"Options", 32u);
        inner[i].Put(L"SourceName", i == 0 ? L"A" : L"B");
        inner[i].Put(L"FileName", paths[i]);
        threads[i] =
            CreateThread(nullptr, 0, ConfigureOften, const_cast<wchar_t*>(keys[i].c_str()), 0, nullptr);
        REQUIRE(threads[i] != nullptr);
    }
    while (WaitForMultipleObjects(2, threads, TRUE, 0) == WAIT_TIMEOUT)
        LogError(L"line");
    for (const HANDLE thread : threads)
        CloseHandle(thread);
    LogError(L"line"); // at least one line
    QxLogger::Instance().Close();
    std::size_t lines = 0;
    for (int i = 0; i < 2; ++i) {
        std::wstring text = FileExists(paths[i]) ? FileText(paths[i]) : L"";
        const std::wstring line = i == 0 ? L"[A] line\r\n" : L"[B] line\r\n";
        for (; text.rfind(line, 0) == 0; ++lines)
            text.erase(0, line.size());
        CHECK(text.empty());
    }
    CHECK(lines > 0);
}
