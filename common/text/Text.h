#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

/// Search, replace and booleans.
namespace QxMisc {

/// Replaces each "%s" of a resource text by the next value. Not printf: a wrong resource text cannot read the
/// stack.
std::wstring FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> values);

/// Lowers A to Z only, independent of the locale.
constexpr wchar_t LowerLetter(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}
bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) noexcept;
/// Strips white space at both ends.
std::wstring_view Trimmed(std::wstring_view text) noexcept;
bool Contains(std::wstring_view text, std::wstring_view part) noexcept;
/// One pass from left to right: replaced text is not searched again.
void ReplaceAll(std::wstring& text, std::wstring_view what, std::wstring_view with);

/// "true" or "false".
std::wstring_view FormatBool(bool value) noexcept;
/// "true" (ignoring case) or "1".
bool ParseBool(std::wstring_view text) noexcept;

} // namespace QxMisc
