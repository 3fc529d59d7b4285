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

/// Category of a message. Headers omit the general one.
enum LogCategory : std::uint32_t {
    LogGeneral = 1,
    LogUtility = 0x10000, // value utilities, handle and registry wrappers
    LogCom = 0x20000,     // error reporting to COM callers
};

/// Type of a message. The library logs errors only; the others are contract.
enum LogType : std::uint32_t {
    LogTypeError = 1,
    LogTypeWarning = 2,
    LogTypeInformation = 4,
    LogTypeDebug = 8
};

/// Logs one message. Does not format a message that is filtered out. Preserves the thread's last error. Wide
/// text is "%ls".
void LogError(std::uint32_t category, const wchar_t* format, ...) noexcept;
/// The same in the general category.
void LogError(const wchar_t* format, ...) noexcept;
/// Contract. The same with a hex dump of bytes below the line, each row after the prefix; a null prefix is
/// empty.
void LogErrorData(std::uint32_t category, const wchar_t* prefix, const void* bytes, std::size_t length,
                  const wchar_t* format, ...) noexcept;

/// The log's settings, as in the registry.
struct LogSettings {
    /// Bits of filters.
    enum Filter : std::uint32_t { ByCategory = 1, ByType = 2 };

    QxString sourceName;           ///< names the program in the header
    bool enabled = false;          ///< false drops every message
    std::uint32_t filters = 0;     ///< which of the two masks apply
    std::uint32_t categories = 0;  ///< mask of the categories that pass
    std::uint32_t types = 0;       ///< mask of the types that pass
    std::uint32_t level = 0;       ///< contract: does not filter
    std::uint32_t options = 0;     ///< parts of the header, see LogFormat::Option
    std::uint32_t maxDataSize = 0; ///< limit of a dump in KiB; 0: none
    std::uint32_t maxFileSize = 0; ///< size in MiB that rotates the file; 0: never
    bool onlyErrorsToFile = false; ///< the file sink takes errors only
    QxString fileName;             ///< of the file sink; empty: no file sink
    bool traceLog = false;         ///< whether there is a trace sink
};

/// A configured sink.
struct LogSink {
    QxLogPtr log;
    bool onlyErrors = false; ///< skips all other types
};

/// Settings and sinks.
struct LogConfiguration {
    LogSettings settings;
    std::vector<LogSink> sinks; ///< in the order of output
};

/// The process-wide log: filters messages, formats lines and writes them to its sinks.
///
/// Any thread may use it at any time, before static construction and after static destruction. Until it is
/// configured it drops everything. Changes and writes hold one lock, so lines never mix and sinks outlive a
/// write; filtering takes no lock. A message logged from inside a write on the same thread is dropped.
class QxLogger {
public:
    static QxLogger& Instance() noexcept;

    constexpr QxLogger() noexcept = default;
    QxLogger(const QxLogger&) = delete;
    QxLogger& operator=(const QxLogger&) = delete;

    /// Atomic change: runs the function on a copy of the configuration, under the lock, and then installs the
    /// copy. Nothing changes if the function throws.
    void Change(const std::function<void(LogConfiguration&)>& change);

    /// Whether a message passes the filters, for callers with costly messages.
    bool Accepts(std::uint32_t category, std::uint32_t type = LogTypeError) const noexcept;

    /// Formats text. On failure logs it and returns the format itself; throws std::bad_alloc if that fails
    /// too.
    std::wstring Formatted(const wchar_t* format, std::va_list arguments);
    /// Formats and writes one message and its data block, if any.
    void LogV(std::uint32_t category, std::uint32_t type, const LogFormat::DataBlock& data,
              const wchar_t* format, std::va_list arguments) noexcept;
    /// Writes an error text verbatim.
    void LogText(std::uint32_t category, std::wstring_view text) noexcept;

    /// Disables the log and releases settings and sinks. Takes no lock: for unloading only, when no other
    /// thread can be in the library.
    void Close() noexcept;

private:
    class Hold;

    bool IsWritingHere() const noexcept;
    void Write(std::uint32_t category, std::uint32_t type, std::wstring_view message,
               const LogFormat::DataBlock& data);

    // Copies that filtering reads without the lock.
    std::atomic<bool> m_enabled{false};
    std::atomic<std::uint32_t> m_filters{0};
    std::atomic<std::uint32_t> m_categories{0};
    std::atomic<std::uint32_t> m_types{0};

    QxLock m_lock;
    /// The thread that holds the lock; 0: none.
    std::atomic<std::uint32_t> m_holder{0};
    LogConfiguration m_configuration;
};
