#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

/// Searching and replacing in text, and booleans as text.
namespace QxMisc {

/// Puts the values in place of the text's "%s" in order, as string resources carry them. Never interprets
/// anything else, so a resource text cannot misread the stack.
std::wstring FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> values);

/// Lowers the letters A to Z only, so that the result does not depend on a locale.
constexpr wchar_t LowerLetter(wchar_t c) noexcept {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}
bool EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) noexcept;
/// Without white space at both ends.
std::wstring_view Trimmed(std::wstring_view text) noexcept;
bool Contains(std::wstring_view text, std::wstring_view part) noexcept;
/// One pass from left to right; what a replacement puts together anew is not replaced again.
void ReplaceAll(std::wstring& text, std::wstring_view what, std::wstring_view with);

/// "true" or "false".
std::wstring_view FormatBool(bool value) noexcept;
/// "true" (ignoring case) or "1".
bool ParseBool(std::wstring_view text) noexcept;

} // namespace QxMisc
