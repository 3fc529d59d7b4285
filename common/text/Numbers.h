#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as text and back, independent of the locale.
namespace QxMisc {

/// Converts the longest valid prefix like the C library's wcstol with 32 bits: accepts leading white space
/// and a sign, clamps out-of-range values, returns 0 without digits. base is 10, or 0 to take it from the
/// text ("0x" hexadecimal, "0" octal).
std::int32_t ParseInt32(std::wstring_view text, int base = 10) noexcept;
/// The unsigned conversion, base taken from the text. A minus sign negates modulo 2^32.
std::uint32_t ParseUInt32(std::wstring_view text) noexcept;

/// Formats like "%ld".
std::wstring FormatInt32(std::int32_t value);
/// The same into the caller's buffer.
inline constexpr std::size_t Int32Length = 11;
using Int32Digits = wchar_t[Int32Length];
std::wstring_view FormatInt32(std::int32_t value, Int32Digits& digits) noexcept;
/// The same to a place for Int32Length characters; returns the end of the text.
wchar_t* WriteInt32(std::int32_t value, wchar_t* to) noexcept;

} // namespace QxMisc
