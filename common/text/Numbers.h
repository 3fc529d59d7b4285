#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as text and back, whatever the locale.
namespace QxMisc {

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

} // namespace QxMisc
