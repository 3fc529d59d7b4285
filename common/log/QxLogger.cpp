#include "QxLogger.h"

#include "common/text/Format.h"
#include "common/text/NeverDestroyed.h"

#include <mutex>
#include <utility>

namespace {

// Static destructors can still log. The module closes it on unloading.
constinit NeverDestroyed<QxLogger> instance;

} // namespace

/// Holds the lock and records the holding thread.
class QxLogger::Hold {
public:
    explicit Hold(QxLogger& logger) noexcept : m_logger(logger), m_guard(logger.m_lock) {
        m_logger.m_holder.store(LogPlatform::CurrentThreadId(), std::memory_order_relaxed);
    }
    ~Hold() { m_logger.m_holder.store(0, std::memory_order_relaxed); }

private:
    QxLogger& m_logger;
    const std::lock_guard<QxLock> m_guard;
};

QxLogger& QxLogger::Instance() noexcept {
    return instance.Get();
}

void QxLogger::Change(const std::function<void(LogConfiguration&)>& change) {
    LogConfiguration next; // declared first, so that old sinks are destroyed after the lock is released
    const Hold hold(*this);
    next = m_configuration;
    change(next);
    std::swap(m_configuration, next);
    const LogSettings& settings = m_configuration.settings;
    m_filters.store(settings.filters, std::memory_order_relaxed);
    m_categories.store(settings.categories, std::memory_order_relaxed);
    m_types.store(settings.types, std::memory_order_relaxed);
    m_enabled.store(settings.enabled, std::memory_order_relaxed);
}

bool QxLogger::Accepts(std::uint32_t category, std::uint32_t type) const noexcept {
    if (!m_enabled.load(std::memory_order_relaxed))
        return false;
    const std::uint32_t filters = m_filters.load(std::memory_order_relaxed);
    if (filters & LogSettings::ByCategory && !(category & m_categories.load(std::memory_order_relaxed)))
        return false;
    return !(filters & LogSettings::ByType) || type & m_types.load(std::memory_order_relaxed);
}

bool QxLogger::IsWritingHere() const noexcept {
    return m_holder.load(std::memory_order_relaxed) == LogPlatform::CurrentThreadId();
}

std::wstring QxLogger::Formatted(const wchar_t* format, std::va_list arguments) {
    try {
        return FormatTextV(format, arguments);
    } catch (...) {
        LogText(LogUtility, L"[QxMisc::FormatStringV] Caught a general exception");
    }
    return format;
}

void QxLogger::LogV(std::uint32_t category, std::uint32_t type, const LogFormat::DataBlock& data,
                    const wchar_t* format, std::va_list arguments) noexcept {
    if (!Accepts(category, type) || IsWritingHere())
        return;
    const LogPlatform::LastErrorKeeper keeper;
    try {
        Write(category, type, Formatted(format, arguments), data);
    } catch (...) {
        // Out of memory: the line is lost.
    }
}

void QxLogger::LogText(std::uint32_t category, std::wstring_view text) noexcept {
    if (!Accepts(category) || IsWritingHere())
        return;
    const LogPlatform::LastErrorKeeper keeper;
    try {
        Write(category, LogTypeError, text, {});
    } catch (...) {
        // Out of memory: the line is lost.
    }
}

void QxLogger::Write(std::uint32_t category, std::uint32_t type, std::wstring_view message,
                     const LogFormat::DataBlock& data) {
    const Hold hold(*this);
    const LogSettings& settings = m_configuration.settings;
    std::wstring line;
    line.reserve(1024);
    LogFormat::AppendHeader(line, settings.options, LogPlatform::CurrentStamp(), category, type,
                            settings.sourceName);
    line.append(message).append(1, L'\n');
    const std::wstring dump = LogFormat::HexDump(data, settings.maxDataSize);
    for (const LogSink& sink : m_configuration.sinks) {
        if (sink.onlyErrors && type != LogTypeError)
            continue;
        sink.log->Write(line);
        if (!dump.empty())
            sink.log->Write(dump);
    }
}

void QxLogger::Close() noexcept {
    m_enabled.store(false, std::memory_order_relaxed);
    LogConfiguration closed;
    std::swap(m_configuration, closed);
}

void LogError(std::uint32_t category, const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    QxLogger::Instance().LogV(category, LogTypeError, {}, format, arguments);
    va_end(arguments);
}

void LogError(const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    QxLogger::Instance().LogV(LogGeneral, LogTypeError, {}, format, arguments);
    va_end(arguments);
}

void LogErrorData(std::uint32_t category, const wchar_t* prefix, const void* bytes, std::size_t length,
                  const wchar_t* format, ...) noexcept {
    std::va_list arguments;
    va_start(arguments, format);
    QxLogger::Instance().LogV(category, LogTypeError, {prefix ? prefix : L"", bytes, length}, format,
                              arguments);
    va_end(arguments);
}
