// Parsing: one pass over the text. Parent links replace recursion.

#include "QxXmlParser.h"

#include "common/text/Text.h"

#include <algorithm>
#include <limits>
#include <utility>

using QxXmlScan::Find;
using QxXmlScan::NextTag;

namespace {

using ElemPos = QxXmlParser::ElemPos;

constexpr std::wstring_view ElementTagNotFound = L"Element tag not found";
constexpr std::wstring_view TagStartsWithQuote = L"Tag starts with quote";
constexpr std::wstring_view AbruptEnd = L"Abrupt end within tag";
constexpr std::wstring_view EndOfTagNotFound = L"End of tag not found";
constexpr std::wstring_view EndTagNotFound = L"End tag of %s element not found";
/// Contract: no document leads to this error.
constexpr std::wstring_view ExpectingEndTag = L"Expecting end tag of element %s";
constexpr std::wstring_view OtherEndTag = L"End tag does not correspond to %s";
constexpr std::wstring_view EndTagNotCompleted = L"End tag not completed for element %s";

/// Longer texts have their start tags counted first: growing the array would map and copy large blocks. A
/// parser used again usually has room enough.
constexpr std::size_t LargeText = 65536;
/// "<a/>".
constexpr std::size_t ShortestElement = 4;

wchar_t CharacterAt(std::wstring_view text, std::int32_t offset) noexcept {
    return text[static_cast<std::size_t>(offset)];
}

/// Fast path for an end tag that is exactly "</name>", as nearly all are. Compares it with the start tag in
/// place; a start tag without attributes gives the length beforehand. False means: apply the token rules.
bool IsPlainEndTag(std::wstring_view text, const ElemPos& element, std::int32_t open,
                   std::int32_t& close) noexcept {
    const auto size = static_cast<std::int32_t>(text.size());
    const std::int32_t name = element.startTagOpen + 1;
    const std::int32_t endName = open + 2;
    const std::int32_t length = element.startTagClose - name;
    const std::int32_t same = QxXmlScan::CommonLength(text, name, endName);
    if (length < size - endName && CharacterAt(text, endName + length) == L'>' && same == length) {
        close = endName + length;
        return true;
    }
    if (same == 0 || same == size - endName || CharacterAt(text, endName + same) != L'>')
        return false;
    close = endName + same;
    return QxXmlScan::WordLength(text, name) == same;
}

/// One parse. Local to this file, so that the compiler inlines everything into one loop.
class DocumentParse {
public:
    DocumentParse(std::wstring_view text, std::vector<ElemPos>& positions, QxString& error,
                  std::int32_t& errorOffset) noexcept
        : m_text(text),
          m_length(static_cast<std::int32_t>(text.size())),
          m_positions(positions),
          m_error(error),
          m_errorOffset(errorOffset) {}

    bool Run();

private:
    ElemPos& At(std::int32_t element) { return m_positions[static_cast<std::size_t>(element)]; }
    bool SkipMarkup(std::int32_t& open, std::int32_t first) const noexcept;
    bool OpenElement(std::int32_t& open, std::int32_t& parent, std::int32_t& previous);
    std::int32_t AddElement(std::int32_t open, std::int32_t close, std::int32_t parent,
                            std::int32_t previous);
    bool IsEndTag(std::int32_t open) const noexcept;
    bool ParseEndTag(std::int32_t element, std::int32_t open);
    bool ParseOtherEndTag(std::int32_t element, std::int32_t open, std::int32_t& close);
    void CompleteElement(ElemPos& element, std::int32_t endTagOpen, std::int32_t endTagClose) noexcept;
    bool Fail(std::wstring_view message, std::int32_t offset, std::int32_t element = 0);

    const std::wstring_view m_text;
    const std::int32_t m_length;
    std::vector<ElemPos>& m_positions;
    QxString& m_error;
    std::int32_t& m_errorOffset;
};

bool DocumentParse::Run() {
    std::int32_t parent = 0;
    std::int32_t previous = 0; // the last child of parent so far
    std::int32_t open = Find(m_text, L'<', 0);
    for (;;) {
        if (open == m_length)
            return parent == 0 ? Fail(ElementTagNotFound, open)
                               : Fail(EndTagNotFound, At(parent).startTagOpen, parent);
        const std::int32_t first = QxXmlScan::SkipSpace(m_text, open + 1);
        if (first == m_length)
            return Fail(AbruptEnd, open);
        switch (CharacterAt(m_text, first)) {
        case L'"':
            return Fail(TagStartsWithQuote, open);
        case L'?':
        case L'!':
            if (!SkipMarkup(open, first))
                return Fail(EndOfTagNotFound, open);
            continue;
        case L'/':
            if (parent == 0 || !ParseEndTag(parent, open))
                return false;
            previous = std::exchange(parent, At(parent).parent);
            break;
        default:
            if (!OpenElement(open, parent, previous))
                return false;
            if (previous == 0)
                continue;
        }
        if (parent == 0) {
            At(0).endTagOpen = At(previous).startTagOpen;
            return true;
        }
        open = At(previous).scanPos;
    }
}

/// Moves from a comment, declaration, CDATA section or processing instruction to the next "<". False, without
/// a change, if it has no end.
bool DocumentParse::SkipMarkup(std::int32_t& open, std::int32_t first) const noexcept {
    const std::wstring_view token = m_text.substr(static_cast<std::size_t>(first), 2);
    const std::wstring_view terminator = token[0] == L'?' ? L"?>"
                                         : token == L"![" ? L"]]>"
                                         : token == L"!-" ? L"-->"
                                                          : L">";
    const std::int32_t end = QxXmlScan::FindTerminator(m_text, terminator, open + 1);
    if (end == m_length)
        return false;
    open = Find(m_text, L'<', end);
    return true;
}

/// Parses the start tag at open. Completes the element, as previous, if its end follows; otherwise makes it
/// the parent.
bool DocumentParse::OpenElement(std::int32_t& open, std::int32_t& parent, std::int32_t& previous) {
    const std::int32_t close = Find(m_text, L'>', open + 1);
    if (close == m_length)
        return Fail(EndOfTagNotFound, open);
    previous = AddElement(open, close, parent, previous);
    if (CharacterAt(m_text, close - 1) == L'/') {
        CompleteElement(At(previous), close - 1, close);
        return true;
    }
    open = NextTag(m_text, close + 1);
    if (IsEndTag(open))
        return ParseEndTag(previous, open);
    parent = std::exchange(previous, 0);
    return true;
}

/// Adds and links the element with that start tag, which ends at the first ">", even in quotes. Returns its
/// index. CompleteElement sets the other offsets.
std::int32_t DocumentParse::AddElement(std::int32_t open, std::int32_t close, std::int32_t parent,
                                       std::int32_t previous) {
    const auto index = static_cast<std::int32_t>(m_positions.size());
    ElemPos& element = m_positions.emplace_back();
    element.startTagOpen = open;
    element.startTagClose = close;
    element.parent = parent;
    if (previous != 0)
        At(previous).nextSibling = index;
    else
        At(parent).firstChild = index;
    return index;
}

/// Whether an end tag without white space at its start begins there: the usual end of an element without
/// children.
bool DocumentParse::IsEndTag(std::int32_t open) const noexcept {
    return open + 1 < m_length && CharacterAt(m_text, open + 1) == L'/';
}

inline bool DocumentParse::ParseEndTag(std::int32_t element, std::int32_t open) {
    std::int32_t close = 0;
    if (!IsPlainEndTag(m_text, At(element), open, close) && !ParseOtherEndTag(element, open, close))
        return false;
    CompleteElement(At(element), open, close);
    return true;
}

/// Applies the token rules.
bool DocumentParse::ParseOtherEndTag(std::int32_t element, std::int32_t open, std::int32_t& close) {
    const std::wstring_view name = QxXmlScan::TagName(m_text, At(element).startTagOpen);
    switch (QxXmlScan::ReadEndTag(m_text, open, name, close)) {
    case QxXmlScan::EndTag::NotAnEndTag:
        return Fail(ExpectingEndTag, open, element);
    case QxXmlScan::EndTag::OtherName:
        return Fail(OtherEndTag, open, element);
    case QxXmlScan::EndTag::NotCompleted:
        return Fail(EndTagNotCompleted, open, element);
    case QxXmlScan::EndTag::Complete:
        break;
    }
    return true;
}

void DocumentParse::CompleteElement(ElemPos& element, std::int32_t endTagOpen,
                                    std::int32_t endTagClose) noexcept {
    element.endTagOpen = endTagOpen;
    element.endTagClose = endTagClose;
    element.scanPos = NextTag(m_text, endTagClose + 1);
}

/// element is named in the message; 0 if the message has no name.
bool DocumentParse::Fail(std::wstring_view message, std::int32_t offset, std::int32_t element) {
    m_errorOffset = offset;
    const std::wstring_view name =
        element != 0 ? QxXmlScan::TagName(m_text, At(element).startTagOpen) : std::wstring_view();
    m_error = QxMisc::FillIn(message, {name});
    return false;
}

} // namespace

bool QxXmlParser::SetDocument(std::wstring_view text) {
    ResetPosition();
    m_attributes.element = 0;
    m_behind = 0;
    if (!m_positions.empty())
        ClearElements();
    if (text.size() > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max()))
        text = {};
    m_document.Assign(text);
    m_texts.Begin(GetDocument().size());
    ReservePositions();
    ClearElements();
    if (GetDocument().empty())
        return false;
    try {
        if (DocumentParse(GetDocument(), m_positions, m_error, m_errorOffset).Run())
            return true;
    } catch (...) {
        ClearElements();
        throw;
    }
    ClearElements();
    return false;
}

/// Leaves only entry 0, with all fields 0.
void QxXmlParser::ClearElements() {
    m_positions.assign(1, ElemPos{});
}

void QxXmlParser::ReservePositions() {
    const std::size_t length = GetDocument().size();
    std::size_t count = length / 32 + 8;
    if (length > LargeText && m_positions.capacity() <= count) {
        const auto startTags = static_cast<std::size_t>(QxXmlScan::CountStartTags(GetDocument()));
        count = std::max(count, std::min(startTags, length / ShortestElement) + 1);
    }
    m_positions.reserve(count);
}
