#include "QxFileLog.h"
#include "QxLogger.h"
#include "QxTraceLog.h"
#include "../QxMisc.h"
#include "../QxRegistryHdl.h"

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

} // namespace

void QxLogger::Configure(const wchar_t* baseKey, void* rootKey, std::uint32_t access) noexcept {
    try {
        QxRegistryHdl key;
        if (!key.Open(static_cast<HKEY>(rootKey), QxMisc::FormatString(L"%ls\\Log", baseKey).c_str(), access))
            return;
        LogSettings settings = GetSettings();
        ReadCommonValues(key, settings);
        key.ReadBool(L"OnlyErrorsToFile", settings.onlyErrorsToFile);
        QxString fileName;
        key.ReadString(L"FileName", fileName);
        bool trace = false;
        key.ReadBool(L"TraceLog", trace);

        SetSettings(settings);
        SetFileLog(fileName);
        SetTraceLog(trace);
    } catch (...) {
        // Out of memory: the log stays as it is.
    }
}

void QxLogger::SetFileLog(const QxString& fileName) {
    const std::uint32_t maxFileSize = GetSettings().maxFileSize;
    if (HasFileSink(fileName, maxFileSize))
        return;
    SetFileSink(fileName.empty() ? nullptr : QxLogPtr(new QxFileLog(fileName, maxFileSize)), maxFileSize);
}

void QxLogger::SetTraceLog(bool on) {
    SetTraceSink(on ? QxLogPtr(new QxTraceLog) : nullptr);
}
