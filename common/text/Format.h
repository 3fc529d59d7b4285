#pragma once

#include <cstdarg>
#include <string>

/// The C library's wide printf; wide text is "%ls". Throws std::bad_alloc, or std::length_error if formatting
/// fails.
std::wstring FormatTextV(const wchar_t* format, std::va_list arguments);
std::wstring FormatText(const wchar_t* format, ...);

/// Ends an argument list that va_start began, also if formatting throws.
struct ArgumentsEnd {
    std::va_list& arguments;
    ~ArgumentsEnd() { va_end(arguments); }
};
