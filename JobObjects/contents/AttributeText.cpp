#include "AttributeText.h"

#include "common/text/Text.h"

namespace AttributeText {

Words Split(std::wstring_view text) {
    Words words;
    ForEachPiece(text, L',',
                 [&](std::wstring_view word) { words.push_back(word == L"Mono" ? BlackAndWhite : word); });
    return words;
}

std::wstring Join(const Words& words) {
    std::wstring text;
    for (const std::wstring_view word : words)
        Append(text, word);
    RemoveTrailingComma(text);
    return text;
}

void Append(std::wstring& text, std::wstring_view word) {
    text.append(word).push_back(L',');
}

void RemoveTrailingComma(std::wstring& text) {
    if (text.ends_with(L','))
        text.pop_back();
}

std::wstring Without(std::wstring_view text, std::initializer_list<std::wstring_view> parts) {
    std::wstring result(text);
    for (const std::wstring_view part : parts)
        QxMisc::ReplaceAll(result, part, {});
    QxMisc::ReplaceAll(result, L",,", L",");
    return result;
}

} // namespace AttributeText
