#include "CapturedLog.h"

#include <catch2/catch.hpp>

#include <atomic>
#include <cerrno>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#ifdef _WIN32
#include <windows.h>
#else
#include <chrono>
#include <thread>
#endif

namespace {

QxLogger& Logger() {
    return QxLogger::Instance();
}

/// Changes the settings and keeps the sinks.
void SetSettings(const LogSettings& settings) {
    Logger().Change([&](LogConfiguration& configuration) { configuration.settings = settings; });
}

void AddSink(QxLogPtr log, bool onlyErrors = false) {
    Logger().Change([&](LogConfiguration& configuration) {
        configuration.sinks.push_back({std::move(log), onlyErrors});
    });
}

LogSettings Enabled() {
    LogSettings settings;
    settings.enabled = true;
    return settings;
}

/// Logs with any type; the free functions log errors only.
void LogTyped(std::uint32_t type, const wchar_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    Logger().LogV(LogGeneral, type, {}, format, arguments);
    va_end(arguments);
}

/// Appends its name and each text to a list shared by several sinks.
class TaggingSink final : public QxLog {
public:
    TaggingSink(std::vector<std::wstring>& texts, const wchar_t* name) : QxLog(name), m_texts(texts) {}
    void Write(std::wstring_view text) noexcept override {
        m_texts.push_back(std::wstring(Name()) + L": " + std::wstring(text));
    }

private:
    std::vector<std::wstring>& m_texts;
};

/// Logs from inside a write, as a failed close of the file does.
class LoggingSink final : public QxLog {
public:
    explicit LoggingSink(int& writes) : QxLog(L"logging"), m_writes(writes) {}
    void Write(std::wstring_view) noexcept override {
        ++m_writes;
        LogError(L"from inside");
        Logger().LogText(LogGeneral, L"from inside");
    }

private:
    int& m_writes;
};

/// Counts its destruction.
class CountedSink final : public QxLog {
public:
    explicit CountedSink(int& destroyed) : QxLog(L"counted"), m_destroyed(destroyed) {}
    ~CountedSink() override { ++m_destroyed; }
    void Write(std::wstring_view) noexcept override {}

private:
    int& m_destroyed;
};

} // namespace

TEST_CASE("Logger_never_configured_drops_everything") {
    const LogSettings settings = CurrentSettings();
    CHECK_FALSE(settings.enabled);
    CHECK(settings.sourceName.empty());
    CHECK(settings.filters == 0);
    CHECK(settings.categories == 0);
    CHECK(settings.types == 0);
    CHECK(settings.level == 0);
    CHECK(settings.options == 0);
    CHECK(settings.maxDataSize == 0);
    CHECK(settings.maxFileSize == 0);
    CHECK_FALSE(settings.onlyErrorsToFile);
    CHECK_FALSE(Logger().Accepts(LogGeneral));
    LogError(L"dropped %d", 1);
}

TEST_CASE("Logger_disabled_drops_and_formats_nothing") {
    CapturedLog log;
    SetSettings({});
    // Formatting this argument would crash.
    LogError(L"%ls", reinterpret_cast<const wchar_t*>(1));
    CHECK(log.Texts().empty());
}

TEST_CASE("Logger_message_is_one_line") {
    CapturedLog log;
    LogError(L"text %ls, number %d", L"wide", 5);
    LogError(LogUtility, L"utility");
    CHECK(log.Texts() == std::vector<std::wstring>{L"text wide, number 5\n", L"utility\n"});
}

TEST_CASE("Logger_header_follows_the_settings") {
    CapturedLog log;
    LogSettings settings = Enabled();
    settings.options = LogFormat::Category | LogFormat::TypeLetter | LogFormat::SourceName;
    settings.sourceName = L"JobObjects";
    SetSettings(settings);
    LogError(LogUtility, L"a");
    LogError(LogCom, L"b");
    LogError(L"c");
    CHECK(log.Joined() == L"[CQx e JobObjects] a\n[CQxCom e JobObjects] b\n[e JobObjects] c\n");
}

TEST_CASE("Logger_general_category_alone_leaves_empty_brackets") {
    CapturedLog log(LogFormat::Category);
    LogError(L"text");
    CHECK(log.Joined() == L"[] text\n");
}

TEST_CASE("Logger_header_shows_time_and_process") {
    CapturedLog log(LogFormat::TimeStamp | LogFormat::ProcessId | LogFormat::ThreadId);
    LogError(L"text");
    const std::wstring line = log.Joined();
    // [2024/01/02 03:04:05 P01C T0B4] text
    REQUIRE(line.size() > 31);
    CHECK(line[0] == L'[');
    CHECK(line[5] == L'/');
    CHECK(line[14] == L':');
    CHECK(line.substr(20, 2) == L" P");
    CHECK(line.find(L" T", 22) != std::wstring::npos);
    CHECK(line.substr(line.size() - 7) == L"] text\n");
}

TEST_CASE("Logger_category_filter_passes_common_bits_only") {
    CapturedLog log;
    LogSettings settings = Enabled();
    settings.categories = LogUtility | 4;
    SetSettings(settings);
    CHECK(Logger().Accepts(LogCom)); // the mask is ignored unless its filter is on
    settings.filters = LogSettings::ByCategory;
    SetSettings(settings);
    CHECK(Logger().Accepts(LogUtility));
    CHECK(Logger().Accepts(5));
    CHECK_FALSE(Logger().Accepts(LogGeneral));
    CHECK_FALSE(Logger().Accepts(LogCom));
    CHECK_FALSE(Logger().Accepts(0));
    LogError(LogUtility, L"passes");
    LogError(LogCom, L"does not");
    LogError(L"does not");
    Logger().LogText(LogUtility, L"100 %");
    Logger().LogText(LogCom, L"does not");
    CHECK(log.Joined() == L"passes\n100 %\n");
}

TEST_CASE("Logger_type_filter_needs_the_error_bit") {
    CapturedLog log;
    LogSettings settings = Enabled();
    settings.filters = LogSettings::ByType;
    settings.types = 0xFFFFFFFE;
    SetSettings(settings);
    LogError(L"dropped");
    settings.types = LogTypeError;
    SetSettings(settings);
    LogError(L"passes");
    CHECK(log.Joined() == L"passes\n");
}

TEST_CASE("Logger_level_does_not_filter") {
    CapturedLog log;
    LogSettings settings = Enabled();
    settings.level = 0xFFFFFFFF;
    SetSettings(settings);
    LogError(L"passes");
    CHECK(log.Joined() == L"passes\n");
    CHECK(CurrentSettings().level == 0xFFFFFFFF);
}

TEST_CASE("Logger_data_block_follows_its_line") {
    CapturedLog log;
    const unsigned char bytes[] = {'O', 'K'};
    LogErrorData(LogGeneral, L"  ", bytes, sizeof(bytes), L"received %d bytes", 2);
    LogErrorData(LogGeneral, nullptr, bytes, 1, L"no prefix");
    LogErrorData(LogGeneral, L"  ", bytes, 0, L"empty block");
    REQUIRE(log.Texts().size() == 5);
    CHECK(log.Texts()[0] == L"received 2 bytes\n");
    CHECK(log.Texts()[1] == L"  00000000:  4F 4B                                               OK\n");
    CHECK(log.Texts()[2] == L"no prefix\n");
    CHECK(log.Texts()[3] == L"00000000:  4F                                                  O\n");
    CHECK(log.Texts()[4] == L"empty block\n");
}

TEST_CASE("Logger_data_block_is_truncated_at_the_configured_size") {
    CapturedLog log;
    LogSettings settings = Enabled();
    settings.maxDataSize = 1;
    SetSettings(settings);
    const std::vector<unsigned char> bytes(1025, 'A');
    LogErrorData(LogGeneral, L"", bytes.data(), bytes.size(), L"long");
    const std::wstring text = log.Joined();
    CHECK(text.find(L"000003F0:") != std::wstring::npos);
    CHECK(text.substr(text.size() - 5) == L"\n...\n");
}

TEST_CASE("Logger_sinks_are_written_in_their_order") {
    CapturedLog log;
    std::vector<std::wstring> order;
    const auto sink = [&](const wchar_t* name) {
        return LogSink{std::make_shared<TaggingSink>(order, name)};
    };
    Logger().Change([&](LogConfiguration& configuration) { configuration.sinks = {sink(L"a"), sink(L"b")}; });
    LogError(L"1");
    Logger().Change([&](LogConfiguration& configuration) { configuration.sinks[0] = sink(L"c"); });
    LogError(L"2");
    Logger().Change([&](LogConfiguration& configuration) { configuration.sinks.pop_back(); });
    LogError(L"3");
    Logger().Change([&](LogConfiguration& configuration) { configuration.sinks.clear(); });
    LogError(L"4");
    CHECK(order == std::vector<std::wstring>{L"a: 1\n", L"b: 1\n", L"c: 2\n", L"b: 2\n", L"c: 3\n"});
}

TEST_CASE("Logger_sink_for_errors_gets_errors_only") {
    CapturedLog all;
    std::vector<std::wstring> errors;
    AddSink(std::make_shared<CapturingSink>(errors), true);
    LogTyped(LogTypeWarning, L"first");
    LogTyped(LogTypeError | LogTypeWarning, L"second");
    LogTyped(LogTypeError, L"third");
    CHECK(errors == std::vector<std::wstring>{L"third\n"});
    CHECK(all.Joined() == L"first\nsecond\nthird\n");
}

TEST_CASE("Logger_removed_sinks_are_released") {
    int destroyed = 0;
    {
        CapturedLog log;
        AddSink(std::make_shared<CountedSink>(destroyed));
        AddSink(std::make_shared<CountedSink>(destroyed));
        Logger().Change([](LogConfiguration& configuration) { configuration.sinks.pop_back(); });
        CHECK(destroyed == 1);
    }
    CHECK(destroyed == 2);
}

TEST_CASE("Logger_failed_change_has_no_effect") {
    CapturedLog log;
    int destroyed = 0;
    CHECK_THROWS_AS(Logger().Change([&](LogConfiguration& configuration) {
        configuration.settings.enabled = false;
        configuration.sinks = {{std::make_shared<CountedSink>(destroyed)}};
        throw std::bad_alloc();
    }),
                    std::bad_alloc);
    CHECK(destroyed == 1);
    LogError(L"written");
    CHECK(log.Joined() == L"written\n");
}

TEST_CASE("Logger_message_raised_inside_a_write_is_dropped") {
    CapturedLog log;
    int writes = 0;
    AddSink(std::make_shared<LoggingSink>(writes));
    LogError(L"outer");
    CHECK(writes == 1);
    CHECK(log.Joined() == L"outer\n");
    LogError(L"next");
    CHECK(writes == 2);
}

TEST_CASE("Logger_very_long_message_is_written_completely") {
    CapturedLog log;
    const std::wstring text(70000, L'x');
    LogError(L"%ls", text.c_str());
    REQUIRE(log.Texts().size() == 1);
    CHECK((log.Texts()[0] == text + L"\n"));
}

TEST_CASE("Logger_closed_log_drops_and_can_be_used_again") {
    {
        CapturedLog log;
    }
    LogError(L"dropped");
    CapturedLog log;
    LogError(L"written");
    CHECK(log.Joined() == L"written\n");
}

/// Overwrites the thread's last error, as system calls in a sink do.
class ErrorSettingSink final : public QxLog {
public:
    ErrorSettingSink() : QxLog(L"error") {}
    void Write(std::wstring_view) noexcept override {
#ifdef _WIN32
        SetLastError(1);
#else
        errno = 1;
#endif
    }
};

TEST_CASE("Logger_keeps_the_last_error_of_the_caller") {
    CapturedLog log;
    AddSink(std::make_shared<ErrorSettingSink>());
#ifdef _WIN32
    SetLastError(4711);
    LogError(L"text %d", 1);
    CHECK(GetLastError() == 4711);
#else
    errno = 4711;
    LogError(L"text %d", 1);
    CHECK(errno == 4711);
#endif
    CHECK(log.Joined() == L"text 1\n");
}

#ifndef _WIN32
TEST_CASE("Logger_threads_never_mix_lines_while_the_log_is_reconfigured") {
    constexpr int threads = 4, lines = 500;
    CapturedLog log;
    std::vector<std::thread> writers;
    for (int t = 0; t < threads; ++t)
        writers.emplace_back([t] {
            for (int i = 0; i < lines; ++i)
                LogError(L"thread %d line %d", t, i);
        });
    int destroyed = 0;
    for (int i = 0; i < 200; ++i)
        Logger().Change([&](LogConfiguration& configuration) {
            configuration.settings.sourceName = std::to_wstring(i);
            configuration.sinks.resize(1);
            configuration.sinks.push_back({std::make_shared<CountedSink>(destroyed)});
        });
    for (std::thread& writer : writers)
        writer.join();
    CHECK(destroyed == 199);
    REQUIRE(log.Texts().size() == threads * lines);
    std::vector<int> next(threads, 0);
    for (const std::wstring& text : log.Texts()) {
        const auto t = static_cast<std::size_t>(text[7] - L'0');
        REQUIRE(t < threads);
        CHECK(text == L"thread " + std::to_wstring(t) + L" line " + std::to_wstring(next[t]++) + L"\n");
    }
}

/// Counts lines that lack the source name set together with this sink.
class MatchingSink final : public QxLog {
public:
    MatchingSink(std::wstring header, std::atomic<int>& strangers)
        : QxLog(L"matching"), m_header(std::move(header)), m_strangers(strangers) {}
    void Write(std::wstring_view text) noexcept override { m_strangers += !text.starts_with(m_header); }

private:
    std::wstring m_header;
    std::atomic<int>& m_strangers;
};

TEST_CASE("Logger_line_during_concurrent_changes_uses_settings_and_sinks_of_one_change") {
    constexpr int changes = 500;
    CapturedLog log(LogFormat::SourceName);
    std::atomic<int> strangers{0};
    std::vector<std::thread> threads;
    for (const wchar_t* name : {L"A", L"B"})
        threads.emplace_back([&strangers, name] {
            for (int i = 0; i < changes; ++i)
                Logger().Change([&](LogConfiguration& configuration) {
                    ++configuration.settings.level;
                    configuration.settings.sourceName = name;
                    const std::wstring header = L"[" + std::wstring(name) + L"] ";
                    configuration.sinks = {{std::make_shared<MatchingSink>(header, strangers)}};
                });
        });
    for (int i = 0; i < 1000; ++i)
        LogError(L"line");
    for (std::thread& thread : threads)
        thread.join();
    // Lines before the first change go to CapturedLog's sink, which does not count.
    CHECK(strangers == 0);
    CHECK(CurrentSettings().level == 2 * changes);
}

namespace {

/// Queues threads for a lock one after the other, this far apart, and returns the order in which they get it.
std::vector<int> OrderOfService(int threads, std::chrono::milliseconds apart) {
    QxLock lock;
    std::vector<int> order;
    std::vector<std::thread> waiting;
    {
        const std::lock_guard<QxLock> guard(lock);
        for (int t = 0; t < threads; ++t) {
            waiting.emplace_back([&, t] {
                const std::lock_guard<QxLock> turn(lock);
                order.push_back(t);
            });
            std::this_thread::sleep_for(apart);
        }
    }
    for (std::thread& thread : waiting)
        thread.join();
    return order;
}

} // namespace

TEST_CASE("Lock_serves_threads_in_order_of_arrival") {
    const std::vector<int> arrival{0, 1, 2, 3, 4, 5, 6, 7};
    // On a loaded machine a thread can start late and queue behind the next: try again with more time. An
    // unfair lock gives one of 40,320 orders each time.
    std::vector<int> service;
    for (int apart = 2; apart <= 256 && service != arrival; apart *= 2)
        service = OrderOfService(8, std::chrono::milliseconds(apart));
    CHECK(service == arrival);
}
#endif
