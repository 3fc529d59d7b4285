#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// Attribute words, separated by commas without spaces.
namespace AttributeText {

/// Words in order, as views: the text must outlive them.
using Words = std::vector<std::wstring_view>;

/// Calls use for each non-empty piece between separators.
template<class Use>
void ForEachPiece(std::wstring_view text, wchar_t separator, Use use) {
    while (!text.empty()) {
        const std::size_t end = text.find(separator);
        if (const std::wstring_view piece = text.substr(0, end); !piece.empty())
            use(piece);
        text.remove_prefix(end == std::wstring_view::npos ? text.size() : end + 1);
    }
}

/// The words of a text. "Mono" (exact case), the word of some page counters, becomes "B&W".
Words Split(std::wstring_view text);
std::wstring Join(const Words& words);

/// Appends a word and a comma.
void Append(std::wstring& text, std::wstring_view word);
void RemoveTrailingComma(std::wstring& text);

/// Removes every occurrence of each part, one part after the other, then replaces ",," by ",". Leading and
/// trailing commas stay.
std::wstring Without(std::wstring_view text, std::initializer_list<std::wstring_view> parts);

/// Words that the code tests for: in exact case and anywhere in the text, even within a word.
inline constexpr std::wstring_view BlackAndWhite = L"B&W";
inline constexpr std::wstring_view Color = L"Color";
inline constexpr std::wstring_view Duplex = L"Duplex";

} // namespace AttributeText
