#include "Rows.h"

#include "common/QxTHandle.h"
#include "common/log/QxFileLog.h"
#include "common/log/QxLogger.h"

#include <windows.h>

namespace {

constexpr const wchar_t* Message = L"Failed to load job attributes xml file '%ls'. %ls";
constexpr std::uint32_t AllHeaderParts = 63;

std::wstring TempFile(const wchar_t* name) {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    std::wstring path = std::wstring(folder) + name;
    DeleteFileW(path.c_str());
    return path;
}

std::wstring ReadLines(const std::wstring& path) {
    const QxKernelHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size{};
    Require(file.IsOpen() && GetFileSizeEx(file.Get(), &size), "the log file");
    std::wstring text(static_cast<std::size_t>(size.QuadPart) / sizeof(wchar_t), L'\0');
    DWORD read = 0;
    Require(::ReadFile(file.Get(), text.data(), static_cast<DWORD>(size.QuadPart), &read, nullptr) &&
                read == size.QuadPart,
            "the log file's lines");
    return text;
}

/// The system calls of one log line, with a ready-made line: append lock, write at the end of the file,
/// flush, size query.
class BareLog {
public:
    BareLog(const std::wstring& path, std::wstring line)
        : m_file(CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                             OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr)),
          m_line(std::move(line)) {
        Require(m_file.IsOpen(), "the other log file");
    }
    void Write() {
        OVERLAPPED lock{};
        lock.OffsetHigh = 0x7FFFFFFF;
        DWORD written = 0;
        LARGE_INTEGER size{};
        LockFileEx(m_file.Get(), LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &lock);
        SetFilePointerEx(m_file.Get(), {}, nullptr, FILE_END);
        WriteFile(m_file.Get(), m_line.data(), static_cast<DWORD>(m_line.size() * sizeof(wchar_t)), &written,
                  nullptr);
        UnlockFileEx(m_file.Get(), 0, 1, 0, &lock);
        FlushFileBuffers(m_file.Get());
        GetFileSizeEx(m_file.Get(), &size);
        Use(static_cast<std::size_t>(size.QuadPart));
    }

private:
    QxKernelHandle m_file;
    std::wstring m_line;
};

/// The second argument is an invalid pointer: a dropped message must not be formatted.
void LogDropped() {
    LogError(LogUtility, Message, L"file", reinterpret_cast<const wchar_t*>(1));
}

void Configure(const LogSettings& settings, const std::vector<LogSink>& sinks) {
    QxLogger::Instance().Change([&](LogConfiguration& configuration) { configuration = {settings, sinks}; });
}

Contender Dropped(const std::string& name, const LogSettings& settings) {
    Configure(settings, {});
    Require(!QxLogger::Instance().Accepts(LogUtility), "a message that should be dropped");
    LogDropped();
    return {name,
            [settings] {
                Configure(settings, {});
                for (int i = 0; i < 10'000; ++i)
                    LogDropped();
            },
            10'000};
}

void AddDroppedRow(Table& table) {
    const std::string work = "a log call that is dropped";
    LogSettings off;
    LogSettings filtered;
    filtered.enabled = true;
    filtered.filters = LogSettings::ByCategory;
    filtered.categories = LogCom;
    table.Time(work, {Dropped("switched off", off), Dropped("filtered out", filtered)}, {});
    for (const char* name : {"switched off", "filtered out"}) {
        if (const double seconds = table.Seconds(work, name); seconds > 0)
            table.Figure(work, name, seconds * 1e9, 10, "ns");
    }
}

void AddWrittenRow(Table& table) {
    const std::wstring path = TempFile(L"bench.log");
    const std::wstring barePath = TempFile(L"bench_bare.log");
    LogSettings settings;
    settings.enabled = true;
    settings.options = AllHeaderParts;
    settings.sourceName = L"Bench";
    settings.maxFileSize = 1000;
    Configure(settings, {{std::make_shared<QxFileLog>(path, settings.maxFileSize)}});
    LogError(LogUtility, Message, L"file", L"reason");
    const std::wstring line = ReadLines(path);
    Require(line.starts_with(L"[") && line.ends_with(L" CQx e Bench] Failed to load job attributes xml file "
                                                     L"'file'. reason\r\n"),
            "the log's line");
    BareLog bare(barePath, line);
    bare.Write();
    Require(ReadLines(barePath) == line, "the bare line");
    table.Time("a log line written",
               {{"log call", [] { LogError(LogUtility, Message, L"file", L"reason"); }},
                {"bare calls", [&bare] { bare.Write(); }}},
               {{"bare calls", 1.5}});
    Require(ReadLines(path).size() % line.size() == 0, "the log's lines");
    QxLogger::Instance().Close();
    DeleteFileW(path.c_str());
}

} // namespace

void AddLogRows(Table& table) {
    AddDroppedRow(table);
    AddWrittenRow(table);
    DeleteFileW(TempFile(L"bench_bare.log").c_str());
}
