#pragma once

#include <cstdarg>
#include <string>

/// The C library's wide printf, in which wide text is "%ls". Throws std::bad_alloc, or std::length_error for
/// a format that cannot be formatted.
std::wstring FormatTextV(const wchar_t* format, std::va_list arguments);
std::wstring FormatText(const wchar_t* format, ...);
