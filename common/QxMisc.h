#pragma once

#include <cstdarg>
#include <string>

/// Utilities that log their failures.
namespace QxMisc {

/// Formats like the C library's wide printf. On failure, out of memory included, logs it and returns the
/// format itself, so never use a result as a format. Throws std::bad_alloc if copying the format
/// fails too.
std::wstring FormatStringV(const wchar_t* format, std::va_list arguments);
std::wstring FormatString(const wchar_t* format, ...);

} // namespace QxMisc
