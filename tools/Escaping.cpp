#include "Escaping.h"

#include <algorithm>

namespace {

constexpr wchar_t Replacement = 0xFFFD;

bool IsHigh(wchar_t c) noexcept {
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLow(wchar_t c) noexcept {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// Control characters, and the two separators that also break lines.
bool IsControl(wchar_t c) noexcept {
    return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

bool IsHalfOfPair(std::wstring_view text, std::size_t at) noexcept {
    if (IsHigh(text[at]))
        return at + 1 == text.size() || !IsLow(text[at + 1]);
    return IsLow(text[at]) && (at == 0 || !IsHigh(text[at - 1]));
}

void AppendControl(std::wstring& text, wchar_t c) {
    if (c == L'\n' || c == L'\r' || c == L'\t') {
        text += c == L'\n' ? L"\\n" : c == L'\r' ? L"\\r" : L"\\t";
        return;
    }
    text += L"\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        text += L"0123456789ABCDEF"[c >> shift & 0xF];
}

/// Escapes control characters, and the given ones with a backslash.
std::wstring Escape(std::wstring_view text, std::wstring_view special) {
    std::wstring escaped;
    escaped.reserve(text.size() + 2);
    for (std::size_t at = 0; at < text.size(); ++at) {
        const wchar_t c = text[at];
        if (IsControl(c))
            AppendControl(escaped, c);
        else if (IsHalfOfPair(text, at))
            escaped += Replacement;
        else if (special.find(c) != std::wstring_view::npos)
            (escaped += L'\\') += c;
        else
            escaped += c;
    }
    return escaped;
}

} // namespace

bool Escaping::IsPlain(std::wstring_view text) noexcept {
    return std::none_of(text.begin(), text.end(),
                        [](wchar_t c) { return IsControl(c) || IsHigh(c) || IsLow(c); });
}

std::wstring Escaping::Plain(std::wstring_view text) {
    return Escape(text, {});
}

std::wstring Escaping::Json(std::wstring_view text) {
    return L"\"" + Escape(text, L"\"\\") + L"\"";
}

std::wstring Escaping::Csv(std::wstring_view text) {
    std::wstring plain = Plain(text);
    if (plain.find_first_of(L"\",") == std::wstring::npos)
        return plain;
    std::wstring quoted = L"\"";
    for (const wchar_t c : plain) {
        if (c == L'"')
            quoted += c;
        quoted += c;
    }
    return quoted + L"\"";
}

std::wstring_view Escaping::Beginning(std::wstring_view text, std::size_t length) noexcept {
    if (length < text.size() && length > 0 && IsHigh(text[length - 1]))
        --length;
    return text.substr(0, length);
}

std::wstring Quoted(std::wstring_view text) {
    constexpr std::size_t longest = 60;
    const std::wstring beginning(Escaping::Beginning(text, longest));
    return L"'" + beginning + (beginning.size() < text.size() ? L"...'" : L"'");
}

std::wstring Count(std::size_t count, const std::wstring& noun) {
    return std::to_wstring(count) + L" " + noun + (count == 1 ? L"" : L"s");
}
