#pragma once

#include <cstdarg>
#include <string>

/// Utilities that report their failures to the log.
namespace QxMisc {

/// Formats as the C library's wide printf does. Where that fails, also for lack of memory, the failure is
/// logged and the result is the format itself: never use a result as a format. Throws std::bad_alloc only if
/// there is not even memory for that.
std::wstring FormatStringV(const wchar_t* format, std::va_list arguments);
std::wstring FormatString(const wchar_t* format, ...);

} // namespace QxMisc
