#include "ReferenceParse.h"

#include <algorithm>
#include <utility>

namespace {

bool IsSpace(wchar_t character) {
    return character == L' ' || character == L'\t' || character == L'\n' || character == L'\r';
}

bool EndsWord(wchar_t character) {
    switch (character) {
    case L'<':
    case L'>':
    case L'=':
    case L'\\':
    case L'/':
    case L'?':
    case L'!':
        return true;
    default:
        return IsSpace(character);
    }
}

bool Is(std::wstring_view token, bool quoted, wchar_t character) {
    return !quoted && token.size() == 1 && token[0] == character;
}

std::wstring_view WithoutPrefix(std::wstring_view name) {
    const std::size_t colon = name.find(L':');
    return colon == std::wstring_view::npos ? name : name.substr(colon + 1);
}

bool StartsWith(std::wstring_view text, std::wstring_view part) {
    return text.size() >= part.size() && std::equal(part.begin(), part.end(), text.begin());
}

} // namespace

ReferenceParse::ReferenceParse(std::wstring_view text) : m_text(text), m_positions(1) {
    if (text.empty())
        return;
    const std::int32_t first = ParseElement(0);
    m_succeeded = first > 0;
    if (m_succeeded)
        At(0).firstChild = first;
    else
        m_positions.assign(1, ElemPos{});
}

/// Offset of the part at or after `from`; the text's length if there is none.
std::int32_t ReferenceParse::Find(std::wstring_view part, std::int32_t from) const {
    return static_cast<std::int32_t>(
        std::min(m_text.find(part, static_cast<std::size_t>(from)), m_text.size()));
}

/// Reads the token at an offset and advances past it. False at the end of the text.
bool ReferenceParse::NextToken(std::int32_t& at, std::wstring_view& token, bool& quoted) const {
    auto from = static_cast<std::size_t>(at);
    while (from < m_text.size() && IsSpace(m_text[from]))
        ++from;
    if (from >= m_text.size())
        return false;
    quoted = m_text[from] == L'"';
    std::size_t end = from + 1;
    if (quoted) {
        ++from;
        while (end < m_text.size() && m_text[end] != L'"')
            ++end;
    } else if (!EndsWord(m_text[from])) {
        while (end < m_text.size() && !EndsWord(m_text[end]))
            ++end;
    }
    token = m_text.substr(from, end - from);
    at = static_cast<std::int32_t>(quoted ? std::min(end + 1, m_text.size()) : end);
    return true;
}

bool ReferenceParse::Fail(std::wstring_view before, std::int32_t element, std::wstring_view after) {
    m_error = before;
    if (element != 0)
        m_error.append(TagName(static_cast<std::size_t>(element))).append(after);
    return false;
}

/// The entry's index; 0 if no element starts here, -1 on error.
std::int32_t ReferenceParse::ParseElement(std::int32_t parent) {
    const auto element = static_cast<std::int32_t>(m_positions.size());
    m_positions.push_back(ElemPos{});
    At(element).parent = parent;
    std::int32_t close = 0;
    bool isEndTag = false;
    if (!FindStartTag(element, parent, close, isEndTag))
        return Error_;
    if (isEndTag) {
        m_positions.pop_back();
        return None;
    }
    At(element).startTagClose = close;
    if (m_text[static_cast<std::size_t>(close) - 1] == L'/') {
        At(element).endTagOpen = close - 1;
        At(element).endTagClose = close;
    } else {
        At(element).endTagOpen = close + 1;
        if (!ParseChildren(element) || !ParseEndTag(element))
            return Error_;
    }
    At(element).scanPos = Find(L"<", At(element).endTagClose);
    return element;
}

/// Skips everything that is not an element.
bool ReferenceParse::FindStartTag(std::int32_t element, std::int32_t parent, std::int32_t& close,
                                  bool& isEndTag) {
    const auto length = static_cast<std::int32_t>(m_text.size());
    std::int32_t scan = At(parent).endTagOpen;
    for (;;) {
        const std::int32_t open = Find(L"<", scan);
        if (open == length)
            return parent == 0 ? Fail(L"Element tag not found")
                               : Fail(L"End tag of ", parent, L" element not found");
        At(element).startTagOpen = At(parent).endTagOpen = open;
        std::int32_t next = open + 1;
        std::wstring_view token;
        bool quoted = false;
        if (!NextToken(next, token, quoted))
            return Fail(L"Abrupt end within tag");
        if (quoted)
            return Fail(L"Tag starts with quote");
        isEndTag = token[0] == L'/';
        if (isEndTag)
            return true;
        const bool skipped = token[0] == L'?' || token[0] == L'!';
        std::wstring_view terminator = L">";
        if (token[0] == L'?')
            terminator = L"?>";
        else if (skipped && next < length && m_text[static_cast<std::size_t>(next)] == L'[')
            terminator = L"]]>";
        else if (skipped && next < length && m_text[static_cast<std::size_t>(next)] == L'-')
            terminator = L"-->";
        close = Find(terminator, open + 1);
        if (close == length)
            return Fail(L"End of tag not found");
        if (!skipped)
            return true;
        scan = close;
    }
}

bool ReferenceParse::ParseChildren(std::int32_t element) {
    std::int32_t previous = 0;
    for (;;) {
        const std::int32_t child = ParseElement(element);
        if (child <= 0)
            return child == None;
        (previous != 0 ? At(previous).nextSibling : At(element).firstChild) = child;
        previous = child;
        At(element).endTagOpen = At(child).endTagClose + 1;
    }
}

/// At the "<" that ended the children.
bool ReferenceParse::ParseEndTag(std::int32_t element) {
    std::int32_t at = At(element).endTagOpen + 1;
    std::wstring_view token;
    bool quoted = false;
    const std::wstring_view name = TagName(static_cast<std::size_t>(element));
    for (int count = 0; NextToken(at, token, quoted);) {
        if (quoted)
            continue;
        ++count;
        if (count == 1 && !Is(token, quoted, L'/'))
            return Fail(L"Expecting end tag of element ", element);
        if (count == 2 && !std::equal(token.begin(), token.end(), name.begin(), name.end()))
            return Fail(L"End tag does not correspond to ", element);
        if (Is(token, quoted, L'>')) {
            At(element).endTagClose = at - 1;
            return true;
        }
    }
    return Fail(L"End tag not completed for element ", element);
}

std::wstring_view ReferenceParse::TagName(std::size_t element) const {
    std::int32_t at = m_positions[element].startTagOpen + 1;
    std::wstring_view token;
    bool quoted = false;
    NextToken(at, token, quoted);
    return token;
}

std::wstring ReferenceParse::Unescape(std::wstring_view text) {
    constexpr std::pair<std::wstring_view, wchar_t> entities[] = {
        {L"&lt;", L'<'}, {L"&amp;", L'&'}, {L"&gt;", L'>'}, {L"&apos;", L'\''}, {L"&quot;", L'"'}};
    std::wstring result;
    while (!text.empty()) {
        const auto* const entity =
            std::find_if(std::begin(entities), std::end(entities), [&](const auto& each) {
                return text.front() == L'&' && StartsWith(text, each.first);
            });
        result.push_back(entity == std::end(entities) ? text.front() : entity->second);
        text.remove_prefix(entity == std::end(entities) ? 1 : entity->first.size());
    }
    return result;
}

std::wstring ReferenceParse::Data(std::size_t element) const {
    const ElemPos& at = m_positions[element];
    if (at.firstChild != 0 || at.startTagClose == at.endTagOpen + 1)
        return {};
    constexpr std::wstring_view mark = L"![CDATA[";
    const auto end = static_cast<std::size_t>(at.endTagOpen);
    std::int32_t next = at.startTagClose + 1;
    const std::wstring_view content =
        m_text.substr(static_cast<std::size_t>(next), end - static_cast<std::size_t>(next));
    std::wstring_view token;
    bool quoted = false;
    NextToken(next, token, quoted); // the "<" of the end tag is a token
    const auto start = static_cast<std::size_t>(token.data() - m_text.data());
    if (StartsWith(token, L"<") && start + 11 < end && StartsWith(m_text.substr(start + 1), mark)) {
        const std::size_t first = start + 1 + mark.size();
        const auto close = static_cast<std::size_t>(Find(L"]]>", static_cast<std::int32_t>(first)));
        if (close < end)
            return std::wstring(m_text.substr(first, close - first));
    }
    return Unescape(content);
}

bool ReferenceParse::Attribute(std::size_t element, std::wstring_view name, std::wstring& value) const {
    std::int32_t at = m_positions[element].startTagOpen + 1;
    std::wstring_view token;
    bool quoted = false;
    NextToken(at, token, quoted);
    while (NextToken(at, token, quoted)) {
        if (Is(token, quoted, L'>') || Is(token, quoted, L'/'))
            return false;
        const std::wstring_view plain = WithoutPrefix(token);
        if (quoted || Is(token, quoted, L'=') ||
            !std::equal(plain.begin(), plain.end(), name.begin(), name.end()))
            continue;
        if (!NextToken(at, token, quoted) || !Is(token, quoted, L'=') || !NextToken(at, token, quoted) ||
            !quoted)
            return false;
        value = Unescape(token);
        return true;
    }
    return false;
}

std::wstring_view ReferenceParse::SubDocument(std::size_t element) const {
    const auto start = static_cast<std::size_t>(m_positions[element].startTagOpen);
    const auto close = static_cast<std::size_t>(m_positions[element].endTagClose) + 1;
    std::size_t end = close;
    while (end < m_text.size() && IsSpace(m_text[end]))
        ++end;
    const bool onlySpace = end == m_text.size() || m_text[end] == L'<';
    return m_text.substr(start, (onlySpace ? end : close) - start);
}
