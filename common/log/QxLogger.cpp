#include "QxLogger.h"

#include "../QxMisc.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace {

/// Keeps the logger from being destroyed, so that a message from the destructor of another static finds a
/// closed log and not a dead one. The module closes it when it is unloaded.
union Storage {
    constexpr Storage() noexcept : logger() {}
    ~Storage() {}

    QxLogger logger;
};

constinit Storage storage;

} // namespace

/// Holds the lock and notes which thread does.
class QxLogger::Hold {
public:
    explicit Hold(const QxLogger& logger) noexcept : m_logger(logger), m_guard(logger.m_lock) {
        m_logger.m_holder.store(LogPlatform::CurrentThreadId(), std::memory_order_relaxed);
    }
    ~Hold() { m_logger.m_holder.store(0, std::memory_order_relaxed); }

private:
    const QxLogger& m_logger;
    const std::lock_guard<QxLock> m_guard;
};

QxLogger& QxLogger::Instance() noexcept {
    return storage.logger;
}

LogSettings QxLogger::GetSettings() const {
    const Hold hold(*this);
    return m_settings;
}

void QxLogger::SetSettings(const LogSettings& settings) {
    const Hold hold(*this);
    m_settings = settings;
    m_filters.store(settings.filters, std::memory_order_relaxed);
    m_categories.store(settings.categories, std::memory_order_relaxed);
    m_types.store(settings.types, std::memory_order_relaxed);
    m_enabled.store(settings.enabled, std::memory_order_relaxed);
}

void QxLogger::SetFileSink(QxLogPtr sink, std::uint32_t maxFileSize) {
    QxLogPtr replaced; // released after the lock: closing a file may log
    const Hold hold(*this);
    replaced = ReplaceSink(m_fileSink, std::move(sink));
    m_fileSinkMaxSize = maxFileSize;
}

bool QxLogger::HasFileSink(std::wstring_view name, std::uint32_t maxFileSize) const noexcept {
    const Hold hold(*this);
    if (!m_fileSink)
        return name.empty();
    return m_fileSink->Name() == name && m_fileSinkMaxSize == maxFileSize;
}

void QxLogger::SetTraceSink(QxLogPtr sink) {
    QxLogPtr replaced;
    const Hold hold(*this);
    replaced = ReplaceSink(m_traceSink, std::move(sink));
}

/// Returns the sink that was in the slot. Called under the lock.
QxLogPtr QxLogger::ReplaceSink(QxLog*& slot, QxLogPtr sink) {
    QxLog* const added = sink.get();
    const auto old = std::find_if(m_sinks.begin(), m_sinks.end(),
                                  [&](const QxLogPtr& held) { return held.get() == slot; });
    if (old == m_sinks.end()) {
        if (added)
            m_sinks.push_back(std::move(sink));
    } else {
        std::swap(*old, sink);
        if (!added)
            m_sinks.erase(old);
    }
    slot = added;
    return sink;
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

void QxLogger::LogV(std::uint32_t category, std::uint32_t type, const LogFormat::DataBlock& data,
                    const wchar_t* format, std::va_list arguments) noexcept {
    if (!Accepts(category, type) || IsWritingHere())
        return;
    const LogPlatform::LastErrorKeeper keeper;
    try {
        Write(category, type, QxMisc::FormatStringV(format, arguments), data);
    } catch (...) {
        // Out of memory: the line is lost, the caller goes on.
    }
}

void QxLogger::LogText(std::uint32_t category, std::wstring_view text) noexcept {
    if (!Accepts(category) || IsWritingHere())
        return;
    const LogPlatform::LastErrorKeeper keeper;
    try {
        Write(category, LogTypeError, text, {});
    } catch (...) {
        // As in LogV.
    }
}

void QxLogger::Write(std::uint32_t category, std::uint32_t type, std::wstring_view message,
                     const LogFormat::DataBlock& data) {
    const Hold hold(*this);
    std::wstring line;
    line.reserve(1024);
    LogFormat::AppendHeader(line, m_settings.options, LogPlatform::CurrentStamp(), category, type,
                            m_settings.sourceName);
    line.append(message).append(1, L'\n');
    const std::wstring dump = LogFormat::HexDump(data, m_settings.maxDataSize);
    for (const QxLogPtr& sink : m_sinks) {
        if (m_settings.onlyErrorsToFile && sink.get() == m_fileSink && type != LogTypeError)
            continue;
        sink->Write(line);
        if (!dump.empty())
            sink->Write(dump);
    }
}

void QxLogger::Close() noexcept {
    m_enabled.store(false, std::memory_order_relaxed);
    m_fileSink = nullptr;
    m_traceSink = nullptr;
    std::vector<QxLogPtr>().swap(m_sinks);
    m_settings = LogSettings();
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
