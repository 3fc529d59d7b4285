#pragma once

#include "LogFormat.h"
#include "QxLog.h"
#include "common/text/QxLock.h"
#include "common/text/QxString.h"

#include <atomic>
#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Category of a message; the log's header shows all but the general one.
enum LogCategory : std::uint32_t {
    LogGeneral = 1,
    LogUtility = 0x10000, // value utilities, handle and registry wrappers
    LogCom = 0x20000,     // error reporting to COM callers
};

/// Type of a message. The system itself logs errors only.
enum LogType : std::uint32_t {
    LogTypeError = 1,
    LogTypeWarning = 2,
    LogTypeInformation = 4,
    LogTypeDebug = 8
};

/// Writes one message under a category. Never throws; formats nothing when the message is filtered out.
/// Leaves the calling thread's last error as it is. Wide text arguments are "%ls".
void LogError(std::uint32_t category, const wchar_t* format, ...) noexcept;
/// The same under the general category.
void LogError(const wchar_t* format, ...) noexcept;
/// The same with a block of bytes that is dumped below the line, each row behind the prefix. A null prefix
/// counts as empty.
void LogErrorData(std::uint32_t category, const wchar_t* prefix, const void* bytes, std::size_t length,
                  const wchar_t* format, ...) noexcept;

/// The log's configurable values, as the registry holds them.
struct LogSettings {
    /// Bits of filters.
    enum Filter : std::uint32_t { ByCategory = 1, ByType = 2 };

    QxString sourceName;           ///< names the program in the header
    bool enabled = false;          ///< false drops every message
    std::uint32_t filters = 0;     ///< which of the two masks below are applied
    std::uint32_t categories = 0;  ///< mask of the categories that pass
    std::uint32_t types = 0;       ///< mask of the types that pass
    std::uint32_t level = 0;       ///< kept for other readers of the key; takes no part in filtering
    std::uint32_t options = 0;     ///< parts of the header, see LogFormat::Option
    std::uint32_t maxDataSize = 0; ///< KiB of a data block that are dumped; 0: all
    std::uint32_t maxFileSize = 0; ///< MiB at which the file is rotated; 0: never
    bool onlyErrorsToFile = false; ///< keeps messages other than errors from the file sink
    QxString fileName;             ///< of the file sink; empty: none
    bool traceLog = false;         ///< whether there is a trace sink
};

/// A sink in the configuration.
struct LogSink {
    QxLogPtr log;
    bool onlyErrors = false; ///< takes messages of the error type alone
};

/// The whole configuration of the log.
struct LogConfiguration {
    LogSettings settings;
    std::vector<LogSink> sinks; ///< in the order in which they are written
};

/// The process-wide log: filters messages, builds their lines and hands them to its sinks in order.
///
/// Usable at any time from any thread, before the first static is constructed and after the last one is
/// destroyed; until it is configured, it drops everything. Changes and writes hold one lock, so that lines
/// never mix and no sink goes away during a write; filtering takes no lock. A message that the same thread
/// raises from inside a write is dropped.
class QxLogger {
public:
    static QxLogger& Instance() noexcept;

    constexpr QxLogger() noexcept = default;
    QxLogger(const QxLogger&) = delete;
    QxLogger& operator=(const QxLogger&) = delete;

    LogSettings GetSettings() const;
    /// Lets the function change a copy of the configuration, which then takes effect as a whole: no line sees
    /// a part of a change, and no change is lost to another one. Nothing changes when the function throws.
    void Change(const std::function<void(LogConfiguration&)>& change);

    /// Whether a message would be written. Callers ask when building the message is costly.
    bool Accepts(std::uint32_t category, std::uint32_t type = LogTypeError) const noexcept;

    /// The formatted text. Where formatting fails, also for lack of memory, the failure is logged and the
    /// text is the format itself. Throws std::bad_alloc only if there is not even memory for that.
    std::wstring Formatted(const wchar_t* format, std::va_list arguments);
    /// Formats and writes one message, with its data block if there is one.
    void LogV(std::uint32_t category, std::uint32_t type, const LogFormat::DataBlock& data,
              const wchar_t* format, std::va_list arguments) noexcept;
    /// Writes an error text as it stands.
    void LogText(std::uint32_t category, std::wstring_view text) noexcept;

    /// Drops the sinks and what the settings hold, and disables the log. Takes no lock: it is for the
    /// unloading of the module, when no other thread can be inside it, but one that the end of the process
    /// cut off may have left the lock taken.
    void Close() noexcept;

private:
    class Hold;

    bool IsWritingHere() const noexcept;
    void Write(std::uint32_t category, std::uint32_t type, std::wstring_view message,
               const LogFormat::DataBlock& data);

    // What filtering reads without the lock.
    std::atomic<bool> m_enabled{false};
    std::atomic<std::uint32_t> m_filters{0};
    std::atomic<std::uint32_t> m_categories{0};
    std::atomic<std::uint32_t> m_types{0};

    mutable QxLock m_lock;
    /// The thread that holds the lock; 0 when none does.
    mutable std::atomic<std::uint32_t> m_holder{0};
    LogConfiguration m_configuration;
};
