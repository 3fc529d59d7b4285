// Editing (contract): replaces a piece of the text, then shifts every offset after it. Everything that can
// throw comes first. The new text is built in m_edit, so names and data may be parts of the document.

#include "QxXmlParser.h"

#include <limits>
#include <stdexcept>

using QxXmlScan::Token;

void QxXmlParser::AddElement(std::wstring_view name, std::wstring_view data) {
    if (m_positions.empty())
        ClearElements();
    const std::int32_t parent = m_current != 0 ? At(m_current).parent : 0;
    m_current = Insert(parent, m_current, name, data);
    m_currentChild = 0;
}

bool QxXmlParser::AddChildElement(std::wstring_view name, std::wstring_view data) {
    if (m_current == 0)
        return false;
    m_currentChild = Insert(m_current, m_currentChild, name, data);
    return true;
}

bool QxXmlParser::SetData(std::wstring_view data) {
    if (!ReplaceContent(m_current, data))
        return false;
    m_currentChild = 0;
    return true;
}

bool QxXmlParser::SetChildData(std::wstring_view data) {
    return ReplaceContent(m_currentChild, data);
}

bool QxXmlParser::SetAttribute(std::wstring_view name, std::wstring_view value) {
    return ReplaceAttribute(m_current, name, value);
}

bool QxXmlParser::SetChildAttribute(std::wstring_view name, std::wstring_view value) {
    return ReplaceAttribute(m_currentChild, name, value);
}

/// Writes a new element after sibling, or as parent's first child if sibling is 0. Returns its index.
std::int32_t QxXmlParser::Insert(std::int32_t parent, std::int32_t sibling, std::wstring_view name,
                                 std::wstring_view data) {
    m_edit.Clear();
    m_edit.AppendElement(name, data);
    const std::wstring_view text = m_edit.View();
    const auto nameLength = static_cast<std::int32_t>(name.size());
    if (m_positions.size() == m_positions.capacity())
        m_positions.reserve(m_positions.size() + m_positions.size() / 2 + 1);
    if (parent != 0 && IsEmptyElement(parent))
        OpenEmptyElement(parent, {});

    std::int32_t start = At(parent).endTagOpen;
    if (sibling != 0)
        start = At(sibling).scanPos;
    else if (At(parent).firstChild != 0)
        start = At(At(parent).firstChild).startTagOpen;
    ReplaceText(start, 0, text);
    const auto length = static_cast<std::int32_t>(text.size());

    const std::int32_t element = NewElement(parent, sibling);
    ShiftFrom(element, start, length);
    ElemPos& position = At(element);
    position.startTagOpen = start;
    position.endTagClose = start + length - 1;
    if (data.empty()) {
        position.startTagClose = position.endTagClose;
        position.endTagOpen = position.endTagClose - 1;
    } else {
        position.startTagClose = start + nameLength + 1;
        position.endTagOpen = position.endTagClose - nameLength - 2;
    }
    position.scanPos = QxXmlScan::NextTag(GetDocument(), start + length);
    return element;
}

/// Adds an entry, for which the caller has reserved memory, and links it after sibling or as parent's first
/// child.
std::int32_t QxXmlParser::NewElement(std::int32_t parent, std::int32_t sibling) {
    const auto element = static_cast<std::int32_t>(m_positions.size());
    std::int32_t& link = sibling != 0 ? At(sibling).nextSibling : At(parent).firstChild;
    const std::int32_t next = link;
    link = element;
    m_positions.push_back({0, 0, 0, 0, 0, parent, 0, next});
    return element;
}

/// Rewrites "<name/>" as "<name>content</name>", and "<name//>" as "<name/ >content</name>": the blank keeps
/// the remaining slash from making the tag an empty element again.
void QxXmlParser::OpenEmptyElement(std::int32_t element, std::wstring_view content) {
    const std::int32_t slash = At(element).endTagOpen;
    std::wstring text(GetDocument()[static_cast<std::size_t>(slash) - 1] == L'/' ? L" >" : L">");
    const std::int32_t close = slash + static_cast<std::int32_t>(text.size()) - 1;
    text.append(content).append(L"</").append(TagName(element)).append(L">");
    ReplaceText(slash, 2, text);
    const auto length = static_cast<std::int32_t>(text.size());
    ShiftFrom(element, slash + 2, length - 2);
    ElemPos& position = At(element);
    position.startTagClose = close;
    position.endTagOpen = close + 1 + static_cast<std::int32_t>(content.size());
    position.endTagClose = slash + length - 1;
}

bool QxXmlParser::ReplaceContent(std::int32_t element, std::wstring_view data) {
    if (element == 0)
        return false;
    m_edit.Clear();
    m_edit.AppendEscaped(data, QxXmlText::Escape::Data);
    const std::wstring_view text = m_edit.View();
    if (IsEmptyElement(element)) {
        if (!text.empty())
            OpenEmptyElement(element, text);
        return true;
    }
    const std::int32_t start = At(element).startTagClose + 1;
    const std::int32_t end = At(element).endTagOpen;
    ReplaceText(start, end - start, text);
    At(element).firstChild = 0;
    ShiftFrom(element, end, static_cast<std::int32_t>(text.size()) - (end - start));
    return true;
}

bool QxXmlParser::ReplaceAttribute(std::int32_t element, std::wstring_view name, std::wstring_view value) {
    if (element == 0 || !HasPlainStartTag(element))
        return false;
    m_edit.Clear();
    std::int32_t start = 0;
    std::int32_t length = 0;
    if (const AttributeValue* const old = FindValue(element, name)) {
        m_edit.AppendEscaped(value, QxXmlText::Escape::Attribute);
        start = static_cast<std::int32_t>(old->text.data() - GetDocument().data());
        length = static_cast<std::int32_t>(old->text.size());
    } else {
        m_edit.AppendAttribute(name, value);
        start = AttributesEnd(element);
    }
    const std::wstring_view text = m_edit.View();
    ReplaceText(start, length, text);
    ShiftFrom(element, start + length, static_cast<std::int32_t>(text.size()) - length);
    return true;
}

/// The offset of the start tag's ">", or of an empty element's "/".
std::int32_t QxXmlParser::AttributesEnd(std::int32_t element) const noexcept {
    return IsEmptyElement(element) ? At(element).endTagOpen : At(element).startTagClose;
}

/// Whether the start tag has a name and no quoted value extends beyond its end.
bool QxXmlParser::HasPlainStartTag(std::int32_t element) const noexcept {
    const std::int32_t end = AttributesEnd(element);
    Token token;
    token.next = At(element).startTagOpen + 1;
    if (!QxXmlScan::NextToken(GetDocument(), token) || token.end >= end)
        return false;
    while (QxXmlScan::NextToken(GetDocument(), token) && token.start <= end) {
        if (token.quoted && token.end + 1 >= end)
            return false;
    }
    return true;
}

void QxXmlParser::ReplaceText(std::int32_t from, std::int32_t length, std::wstring_view text) {
    const auto replaced = static_cast<std::size_t>(length);
    constexpr auto limit = static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max());
    if (text.size() > limit - (GetDocument().size() - replaced))
        throw std::length_error("document too long");
    m_attributes.element = 0;
    m_document.Replace(static_cast<std::size_t>(from), replaced, text);
}

/// Adds difference to every offset at or after behind, in the element, its descendants, everything after it
/// and its ancestors. Nothing else has such an offset, except entry 0 and the scanPos of the sibling before a
/// new element: both keep pointing at that element's start.
void QxXmlParser::ShiftFrom(std::int32_t element, std::int32_t behind, std::int32_t difference) noexcept {
    const auto shift = [&](std::int32_t index) {
        ElemPos& position = At(index);
        for (std::int32_t* offset : {&position.startTagOpen, &position.startTagClose, &position.endTagOpen,
                                     &position.endTagClose, &position.scanPos})
            *offset += *offset >= behind ? difference : 0;
    };
    std::int32_t at = element;
    std::int32_t inside = 0; // levels below an element that is already shifted
    shift(at);
    for (;;) {
        if (At(at).firstChild != 0) {
            at = At(at).firstChild;
            ++inside;
            shift(at);
            continue;
        }
        while (At(at).nextSibling == 0) {
            at = At(at).parent;
            if (at == 0)
                return;
            if (inside > 0)
                --inside;
            else
                shift(at);
        }
        at = At(at).nextSibling;
        shift(at);
    }
}
