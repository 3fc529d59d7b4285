#include "QxMisc.h"

#include "common/log/QxLogger.h"
#include "common/text/Format.h"

std::wstring QxMisc::FormatStringV(const wchar_t* format, std::va_list arguments) {
    return QxLogger::Instance().Formatted(format, arguments);
}

std::wstring QxMisc::FormatString(const wchar_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const ArgumentsEnd end{arguments};
    return FormatStringV(format, arguments);
}
