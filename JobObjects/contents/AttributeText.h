#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Texts of attribute words, separated by commas without spaces.
namespace AttributeText {

/// Words of a text, in order. They are views: the text must outlive them.
using Words = std::vector<std::wstring_view>;

/// The non-empty pieces between commas. The word "Mono" (exact case) comes out as "B&W", the catalogue's
/// word for what some page counters call mono.
Words Split(std::wstring_view text);
std::wstring Join(const Words& words);

/// Appends a word and the comma that separates it from the next.
void Append(std::wstring& text, std::wstring_view word);
void RemoveTrailingComma(std::wstring& text);

/// Drops every "B&W" and "Color" from the text, wherever they stand, and then writes every ",," as ",".
std::wstring WithoutColorWords(std::wstring_view text);
/// Whether the text contains "Color" anywhere, in exact case.
bool HasColor(std::wstring_view text) noexcept;
/// Whether the text contains "Duplex" anywhere, in exact case.
bool HasDuplex(std::wstring_view text) noexcept;

} // namespace AttributeText
