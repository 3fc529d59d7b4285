#include "QxXmlScan.h"

#include <algorithm>
#include <array>

namespace QxXmlScan {

namespace {

constexpr std::wstring_view White = L" \t\n\r";
constexpr std::wstring_view Specials = L"<>=\\/?!";

/// For each ASCII character, whether it ends an unquoted token.
constexpr std::array<bool, 128> MakeTokenEnds() {
    std::array<bool, 128> ends{};
    for (wchar_t character : White)
        ends[static_cast<std::size_t>(character)] = true;
    for (wchar_t character : Specials)
        ends[static_cast<std::size_t>(character)] = true;
    return ends;
}

constexpr std::array<bool, 128> TokenEnds = MakeTokenEnds();

bool EndsToken(wchar_t character) noexcept {
    const auto code = static_cast<std::size_t>(character);
    return code < TokenEnds.size() && TokenEnds[code];
}

} // namespace

std::int32_t WordLength(std::wstring_view text, std::int32_t from) noexcept {
    const wchar_t* const begin = text.data() + from;
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* at = begin;
    while (at != end && !EndsToken(*at))
        ++at;
    return static_cast<std::int32_t>(at - begin);
}

bool NextToken(std::wstring_view text, Token& token) noexcept {
    const auto length = static_cast<std::int32_t>(text.size());
    token.start = SkipSpace(text, token.next);
    if (token.start == length) {
        token.next = length;
        return false;
    }
    token.quoted = text[static_cast<std::size_t>(token.start)] == L'"';
    if (token.quoted) {
        ++token.start;
        const std::int32_t quote = Find(text, L'"', token.start);
        token.end = quote - 1;
        token.next = std::min(quote + 1, length);
    } else {
        token.next = token.start + std::max(WordLength(text, token.start), 1);
        token.end = token.next - 1;
    }
    return true;
}

std::int32_t FindTerminator(std::wstring_view text, std::wstring_view terminator,
                            std::int32_t from) noexcept {
    const auto length = static_cast<std::int32_t>(text.size());
    const auto before = static_cast<std::int32_t>(terminator.size()) - 1;
    for (std::int32_t last = Find(text, L'>', from); last < length; last = Find(text, L'>', last + 1)) {
        const std::int32_t start = last - before;
        if (start >= from && text.substr(static_cast<std::size_t>(start), terminator.size()) == terminator)
            return start;
    }
    return length;
}

std::int32_t CountStartTags(std::wstring_view text) noexcept {
    const auto last = static_cast<std::int32_t>(text.size()) - 1;
    std::int32_t count = 0;
    for (std::int32_t open = Find(text, L'<', 0); open < last; open = Find(text, L'<', open + 1)) {
        const wchar_t next = text[static_cast<std::size_t>(open) + 1];
        if (next != L'/' && next != L'!' && next != L'?')
            ++count;
    }
    return count;
}

std::wstring_view TagName(std::wstring_view text, std::int32_t open) noexcept {
    const std::int32_t start = SkipSpace(text, open + 1);
    return text.substr(static_cast<std::size_t>(start),
                       static_cast<std::size_t>(std::max(WordLength(text, start), 1)));
}

bool StartsWithWord(std::wstring_view text, std::wstring_view word) noexcept {
    const std::size_t length = word.size();
    return (text.size() > length ? EndsToken(text[length]) : text.size() == length) &&
           Equal(std::wstring_view(text.data(), length), word);
}

bool IsPlainName(std::wstring_view name) noexcept {
    for (const wchar_t character : name) {
        if (character == L':' || EndsToken(character))
            return false;
    }
    return true;
}

std::wstring_view WithoutPrefix(std::wstring_view name) noexcept {
    const auto colon = static_cast<std::size_t>(Find(name, L':', 0));
    return colon == name.size() ? name : name.substr(colon + 1);
}

EndTag ReadEndTag(std::wstring_view text, std::int32_t open, std::wstring_view name,
                  std::int32_t& close) noexcept {
    Token token;
    token.next = open + 1;
    for (int unquoted = 0; NextToken(text, token);) {
        if (token.quoted)
            continue;
        ++unquoted;
        if (unquoted == 1 && !token.IsUnquoted(text, L'/'))
            return EndTag::NotAnEndTag;
        if (unquoted == 2 && !Equal(token.In(text), name))
            return EndTag::OtherName;
        if (token.IsUnquoted(text, L'>')) {
            close = token.start;
            return EndTag::Complete;
        }
    }
    return EndTag::NotCompleted;
}

} // namespace QxXmlScan
