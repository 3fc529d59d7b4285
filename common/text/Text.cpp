#include "Text.h"

#include <algorithm>
#include <utility>

std::wstring QxMisc::FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> values) {
    constexpr std::wstring_view mark = L"%s";
    std::wstring result;
    for (const std::wstring_view value : values) {
        const std::size_t at = text.find(mark);
        if (at == std::wstring_view::npos)
            break;
        result.append(text.substr(0, at)).append(value);
        text.remove_prefix(at + mark.size());
    }
    return result.append(text);
}

bool QxMisc::EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return LowerLetter(x) == LowerLetter(y); });
}

std::wstring_view QxMisc::Trimmed(std::wstring_view text) noexcept {
    constexpr wchar_t white[] = L" \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(white);
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(white) - first + 1);
}

bool QxMisc::Contains(std::wstring_view text, std::wstring_view part) noexcept {
    return text.find(part) != std::wstring_view::npos;
}

void QxMisc::ReplaceAll(std::wstring& text, std::wstring_view what, std::wstring_view with) {
    if (what.empty())
        return;
    std::size_t at = text.find(what);
    if (at == std::wstring::npos)
        return;
    std::wstring result;
    std::size_t start = 0;
    for (; at != std::wstring::npos; at = text.find(what, start)) {
        result.append(text, start, at - start).append(with);
        start = at + what.size();
    }
    result.append(text, start);
    text = std::move(result);
}

std::wstring_view QxMisc::FormatBool(bool value) noexcept {
    return value ? L"true" : L"false";
}

bool QxMisc::ParseBool(std::wstring_view text) noexcept {
    return text == L"1" || EqualsIgnoreCase(text, L"true");
}
