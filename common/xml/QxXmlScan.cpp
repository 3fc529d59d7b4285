#include "QxXmlScan.h"

#include <algorithm>
#include <array>

namespace QxXmlScan {

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
