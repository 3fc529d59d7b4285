#include "LogRegistry.h"

#include "QxMisc.h"
#include "QxRegistryHdl.h"
#include "common/log/QxFileLog.h"
#include "common/log/QxLogger.h"
#include "common/log/QxTraceLog.h"

namespace {

void ReadCommonValues(QxRegistryHdl& key, LogSettings& settings) {
    key.ReadString(L"SourceName", settings.sourceName);
    key.ReadBool(L"Enabled", settings.enabled);
    key.ReadNumber(L"Filters", settings.filters);
    key.ReadNumber(L"Categories", settings.categories);
    key.ReadNumber(L"Types", settings.types);
    key.ReadNumber(L"Level", settings.level);
    key.ReadNumber(L"Options", settings.options);
    key.ReadNumber(L"MaxDataSize", settings.maxDataSize);
    key.ReadNumber(L"MaxFileSize", settings.maxFileSize);
}

/// A missing value removes its sink.
void ReadSinkValues(QxRegistryHdl& key, LogSettings& settings) {
    key.ReadBool(L"OnlyErrorsToFile", settings.onlyErrorsToFile);
    settings.fileName = {};
    key.ReadString(L"FileName", settings.fileName);
    settings.traceLog = false;
    key.ReadBool(L"TraceLog", settings.traceLog);
}

/// The file sink for the settings: the current one if its name and maximum size are unchanged.
QxLogPtr FileLog(const LogSettings& settings, const LogConfiguration& current) {
    for (const LogSink& sink : current.sinks)
        if (current.settings.fileName == settings.fileName &&
            current.settings.maxFileSize == settings.maxFileSize && sink.log->Name() == settings.fileName)
            return sink.log;
    return std::make_shared<QxFileLog>(settings.fileName, settings.maxFileSize);
}

std::vector<LogSink> SinksFor(const LogSettings& settings, const LogConfiguration& current) {
    std::vector<LogSink> sinks;
    if (!settings.fileName.empty())
        sinks.push_back({FileLog(settings, current), settings.onlyErrorsToFile});
    if (settings.traceLog)
        sinks.push_back({std::make_shared<QxTraceLog>()});
    return sinks;
}

} // namespace

void ConfigureLog(const wchar_t* baseKey, HKEY rootKey, REGSAM access,
                  std::wstring_view sourceName) noexcept {
    try {
        QxRegistryHdl key; // closed after the change, which would drop the message of a failed close
        if (!key.Open(rootKey, QxMisc::FormatString(L"%ls\\Log", baseKey).c_str(), access))
            return;
        QxLogger::Instance().Change([&](LogConfiguration& configuration) {
            LogSettings settings = configuration.settings;
            ReadCommonValues(key, settings);
            ReadSinkValues(key, settings);
            if (!sourceName.empty())
                settings.sourceName = QxString(sourceName);
            configuration.sinks = SinksFor(settings, configuration);
            configuration.settings = settings;
        });
    } catch (...) {
        // Out of memory: the log stays as it is.
    }
}
