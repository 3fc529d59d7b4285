// Parsing: one pass over the text, without recursion. The element that is open is known by its index, the
// way back out of it by its parent link.

#include "QxXmlParser.h"

#include "QxMisc.h"

#include <algorithm>
#include <limits>

using QxXmlScan::Find;

namespace {

constexpr std::wstring_view ElementTagNotFound = L"Element tag not found";
constexpr std::wstring_view TagStartsWithQuote = L"Tag starts with quote";
constexpr std::wstring_view AbruptEnd = L"Abrupt end within tag";
constexpr std::wstring_view EndOfTagNotFound = L"End of tag not found";
constexpr std::wstring_view EndTagNotFound = L"End tag of %s element not found";
constexpr std::wstring_view ExpectingEndTag = L"Expecting end tag of element %s";
constexpr std::wstring_view OtherEndTag = L"End tag does not correspond to %s";
constexpr std::wstring_view EndTagNotCompleted = L"End tag not completed for element %s";

/// From this length on the start tags are counted first: growing would map and copy large blocks.
constexpr std::size_t LargeText = 65536;
/// "<a/>": no element is shorter.
constexpr std::size_t ShortestElement = 4;

/// Whether the end tag is just "</", the element's name and ">", as nearly every one is. False leaves the
/// answer to the token rules.
bool IsPlainEndTag(std::wstring_view text, std::int32_t startTag, std::int32_t endTag,
                   std::int32_t& close) noexcept {
    const wchar_t* const name = text.data() + startTag + 1;
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* const endName = text.data() + endTag + 2;
    std::int32_t length = 0;
    while (endName + length != end && endName[length] != L'>' && endName[length] == name[length])
        ++length;
    if (endName + length == end || endName[length] != L'>')
        return false;
    close = endTag + 2 + length;
    return length > 0 && QxXmlScan::WordLength(text, startTag + 1) == length;
}

} // namespace

bool QxXmlParser::SetDocument(std::wstring_view text) {
    ResetPosition();
    ClearElements();
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        m_document.clear();
        return false;
    }
    m_document.assign(text);
    if (m_document.empty())
        return false;
    try {
        ReservePositions();
        if (Parse())
            return true;
    } catch (...) {
        ClearElements();
        throw;
    }
    ClearElements();
    return false;
}

/// Leaves entry 0 alone, with all fields 0.
void QxXmlParser::ClearElements() {
    m_positions.assign(1, ElemPos{});
}

void QxXmlParser::ReservePositions() {
    const std::size_t length = m_document.size();
    std::size_t count = length / 64 + 8;
    if (length > LargeText) {
        const auto startTags = static_cast<std::size_t>(QxXmlScan::CountStartTags(m_document));
        count = std::max(count, std::min(startTags, length / ShortestElement) + 1);
    }
    m_positions.reserve(count);
}

bool QxXmlParser::Parse() {
    const std::wstring_view text = m_document;
    const auto length = static_cast<std::int32_t>(text.size());
    std::int32_t parent = 0;
    std::int32_t previous = 0; // the last child of parent so far
    for (std::int32_t scan = 0;;) {
        const std::int32_t open = Find(text, L'<', scan);
        if (open == length)
            return parent == 0 ? Fail(ElementTagNotFound) : Fail(EndTagNotFound, parent);
        const std::int32_t first = QxXmlScan::SkipSpace(text, open + 1);
        if (first == length)
            return Fail(AbruptEnd);
        const wchar_t kind = text[static_cast<std::size_t>(first)];
        if (kind == L'"')
            return Fail(TagStartsWithQuote);
        if (kind == L'?' || kind == L'!') {
            scan = SkipMarkup(open, first);
            if (scan == length)
                return Fail(EndOfTagNotFound);
            continue;
        }
        if (kind == L'/') {
            if (parent == 0 || !ParseEndTag(parent, open))
                return false;
            previous = parent;
        } else {
            if (!OpenElement(open, parent, previous))
                return false;
            previous = static_cast<std::int32_t>(m_positions.size()) - 1;
            if (!IsEmptyElement(previous)) {
                parent = previous;
                previous = 0;
                scan = At(parent).endTagOpen;
                continue;
            }
            CompleteElement(previous, At(previous).startTagClose);
        }
        parent = At(previous).parent;
        if (parent == 0)
            return true;
        scan = At(previous).scanPos;
    }
}

/// Passes over a comment, a declaration, a CDATA section or a processing instruction: the offset of its
/// terminator, or the text's length.
std::int32_t QxXmlParser::SkipMarkup(std::int32_t open, std::int32_t first) const noexcept {
    const std::wstring_view token = std::wstring_view(m_document).substr(static_cast<std::size_t>(first), 2);
    if (token[0] == L'?')
        return QxXmlScan::FindTerminator(m_document, L"?>", open + 1);
    if (token == L"![")
        return QxXmlScan::FindTerminator(m_document, L"]]>", open + 1);
    if (token == L"!-")
        return QxXmlScan::FindTerminator(m_document, L"-->", open + 1);
    return QxXmlScan::FindTerminator(m_document, L">", open + 1);
}

/// Adds the entry of the element whose "<" is at open and links it. The start tag ends at the first ">",
/// in quotes or not.
bool QxXmlParser::OpenElement(std::int32_t open, std::int32_t parent, std::int32_t previous) {
    const std::int32_t close = Find(m_document, L'>', open + 1);
    if (close == static_cast<std::int32_t>(m_document.size()))
        return Fail(EndOfTagNotFound);
    if (m_positions.size() == m_positions.capacity())
        m_positions.reserve(m_positions.size() + m_positions.size() / 2);
    const auto element = static_cast<std::int32_t>(m_positions.size());
    const bool empty = m_document[static_cast<std::size_t>(close) - 1] == L'/';
    m_positions.push_back({open, close, empty ? close - 1 : close + 1, 0, close + 1, parent, 0, 0});
    if (previous != 0)
        At(previous).nextSibling = element;
    else
        At(parent).firstChild = element;
    if (parent == 0)
        At(0).endTagOpen = open;
    return true;
}

bool QxXmlParser::ParseEndTag(std::int32_t element, std::int32_t open) {
    At(element).endTagOpen = open;
    std::int32_t close = 0;
    if (!IsPlainEndTag(m_document, At(element).startTagOpen, open, close)) {
        switch (QxXmlScan::ReadEndTag(m_document, open, TagName(element), close)) {
        case QxXmlScan::EndTag::NotAnEndTag:
            return Fail(ExpectingEndTag, element);
        case QxXmlScan::EndTag::OtherName:
            return Fail(OtherEndTag, element);
        case QxXmlScan::EndTag::NotCompleted:
            return Fail(EndTagNotCompleted, element);
        case QxXmlScan::EndTag::Complete:
            break;
        }
    }
    CompleteElement(element, close);
    return true;
}

void QxXmlParser::CompleteElement(std::int32_t element, std::int32_t endTagClose) noexcept {
    At(element).endTagClose = endTagClose;
    At(element).scanPos = Find(m_document, L'<', endTagClose);
}

bool QxXmlParser::Fail(std::wstring_view message, std::int32_t element) {
    m_error = QxMisc::FillIn(message, {TagName(element)});
    return false;
}
