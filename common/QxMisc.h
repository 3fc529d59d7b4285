#pragma once

#include "QxString.h"

#include <cstdarg>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

/// Text utilities that all records share. In every printf format of the system wide text is "%ls".
namespace QxMisc {

/// Formats as the C library's wide printf does. Where that fails, also for lack of memory, the failure is
/// logged and the result is the format itself: never use a result as a format. Throws std::bad_alloc only if
/// there is not even memory for that.
std::wstring FormatStringV(const wchar_t* format, std::va_list arguments);
std::wstring FormatString(const wchar_t* format, ...);

/// Puts the values in place of the text's "%s" in order, as string resources carry them. Never interprets
/// anything else, so a resource text cannot misread the stack.
std::wstring FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> values);

/// Signed conversion of the longest valid prefix, as the C library's wcstol does it with 32 bits: leading
/// white space and a sign are accepted, out-of-range values clamp, text without digits gives 0.
/// base is 10, or 0 to take it from the text ("0x" hexadecimal, "0" octal).
std::int32_t ParseInt32(std::wstring_view text, int base = 10) noexcept;
/// Unsigned likewise (a minus sign negates modulo 2^32), base taken from the text.
std::uint32_t ParseUInt32(std::wstring_view text) noexcept;

/// "%ld" of the value.
std::wstring FormatInt32(std::int32_t value);
/// The same into a buffer of the caller's.
using Int32Digits = wchar_t[11];
std::wstring_view FormatInt32(std::int32_t value, Int32Digits& digits) noexcept;

/// Lowers the letters A to Z only, so that the result does not depend on a locale.
constexpr wchar_t LowerLetter(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}
bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) noexcept;
bool Contains(std::wstring_view text, std::wstring_view part) noexcept;
/// One pass from left to right; what a replacement puts together anew is not replaced again.
void ReplaceAll(std::wstring& text, std::wstring_view what, std::wstring_view with);

/// "true" or "false".
std::wstring_view FormatBool(bool value) noexcept;
/// "true" (ignoring case) or "1".
bool ParseBool(std::wstring_view text) noexcept;

} // namespace QxMisc
