#pragma once

#include <string>
#include <string_view>

/// Appends a text as UTF-8. Halves of surrogate pairs become U+FFFD.
void AppendUtf8(std::string& bytes, std::wstring_view text);
std::string Utf8(std::wstring_view text);
/// The text of well-formed UTF-8.
std::wstring Wide(std::string_view bytes);
