// Navigation and reading, in place; only returned values are copied.

#include "QxXmlParser.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"

using QxXmlScan::Token;

namespace {

constexpr std::wstring_view CDataOpen = L"![CDATA[";
constexpr std::wstring_view CDataClose = L"]]>";

} // namespace

/// Requires QxXmlScan::IsPlainName(name). Inline, like HasName: walks spend most of their time here.
inline bool QxXmlParser::HasPlainName(std::int32_t element, std::wstring_view name) const noexcept {
    const ElemPos& position = At(element);
    const wchar_t* const inside = GetDocument().data() + position.startTagOpen + 1;
    const auto length = static_cast<std::size_t>(position.startTagClose - position.startTagOpen - 1);
    if (name.size() <= length && QxXmlScan::EndsToken(inside[name.size()]) &&
        QxXmlScan::Equal({inside, name.size()}, name))
        return true;
    return HasSpacedOrPrefixedName(element, name);
}

inline bool QxXmlParser::HasName(std::int32_t element, const SoughtName& name) const noexcept {
    return name.IsPlain() ? HasPlainName(element, name)
                          : QxXmlScan::Equal(QxXmlScan::WithoutPrefix(TagName(element)), name);
}

/// The first element with the name among candidate and its later siblings; 0 if none.
std::int32_t QxXmlParser::FindFrom(std::int32_t candidate, const SoughtName& name) const noexcept {
    while (candidate != 0 && !name.empty() && !HasName(candidate, name))
        candidate = At(candidate).nextSibling;
    return candidate;
}

void QxXmlParser::ResetPosition() noexcept {
    m_current = 0;
    m_currentChild = 0;
}

bool QxXmlParser::FindElement(const SoughtName& name, bool restart) noexcept {
    if (restart)
        ResetPosition();
    const std::int32_t first = m_current != 0 ? At(m_current).nextSibling : FirstTopLevel();
    const std::int32_t found = FindFrom(first, name);
    if (found == 0)
        return false;
    m_current = found;
    m_currentChild = 0;
    return true;
}

bool QxXmlParser::FindChildElement(const SoughtName& name, bool restart) noexcept {
    if (m_current == 0 && !FindElement())
        return false;
    if (restart)
        m_currentChild = 0;
    const std::int32_t first =
        m_currentChild != 0 ? At(m_currentChild).nextSibling : At(m_current).firstChild;
    const std::int32_t found = FindFrom(first, name);
    if (found == 0)
        return false;
    m_currentChild = found;
    return true;
}

bool QxXmlParser::FindUniqueChild(std::wstring_view name, std::int32_t& found) noexcept {
    const std::int32_t next = found != 0 ? At(found).nextSibling : At(m_current).firstChild;
    m_currentChild = next;
    while (m_currentChild != 0 && !HasPlainName(m_currentChild, name))
        m_currentChild = At(m_currentChild).nextSibling;
    if (m_currentChild == 0)
        return false;
    if (m_currentChild == next)
        found = next;
    return true;
}

bool QxXmlParser::IntoElement() noexcept {
    if (m_currentChild == 0)
        return false;
    m_current = m_currentChild;
    m_currentChild = 0;
    return true;
}

bool QxXmlParser::OutOfElement() noexcept {
    if (m_current == 0 || At(m_current).parent == 0)
        return false;
    m_currentChild = m_current;
    m_current = At(m_current).parent;
    return true;
}

bool QxXmlParser::IntoSubDocument() noexcept {
    const std::wstring_view text = GetChildSubDocument();
    if (!IntoElement())
        return false;
    m_behind =
        static_cast<std::size_t>(GetDocument().data() + GetDocument().size() - text.data()) - text.size();
    m_attributes.element = 0;
    return true;
}

void QxXmlParser::OutOfSubDocument() noexcept {
    m_behind = 0;
    m_attributes.element = 0;
    OutOfElement();
}

void QxXmlParser::SelectElement(std::int32_t element) noexcept {
    m_current = element;
    m_currentChild = 0;
}

/// The rest of HasPlainName: without leading white space or a prefix, the name would have matched there.
bool QxXmlParser::HasSpacedOrPrefixedName(std::int32_t element, std::wstring_view name) const noexcept {
    const ElemPos& position = At(element);
    const std::wstring_view inside = Piece(position.startTagOpen + 1, position.startTagClose);
    const auto length = static_cast<std::int32_t>(inside.size());
    if (length > 0 && !QxXmlScan::IsSpace(inside.front()) && QxXmlScan::Find(inside, L':', 0) == length)
        return false;
    return QxXmlScan::Equal(QxXmlScan::WithoutPrefix(TagName(element)), name);
}

std::wstring_view QxXmlParser::TagName(std::int32_t element) const noexcept {
    return element != 0 ? QxXmlScan::TagName(GetDocument(), At(element).startTagOpen) : std::wstring_view();
}

std::wstring_view QxXmlParser::GetTagName() const noexcept {
    return TagName(m_current);
}

std::wstring_view QxXmlParser::GetChildTagName() const noexcept {
    return TagName(m_currentChild);
}

/// The document's text for an element's data. raw: from a CDATA section, not to be unescaped.
std::wstring_view QxXmlParser::Content(std::int32_t element, bool& raw) const noexcept {
    raw = false;
    if (element == 0 || At(element).firstChild != 0 || IsEmptyElement(element))
        return {};
    const std::int32_t begin = At(element).startTagClose + 1;
    const std::int32_t end = At(element).endTagOpen;
    const std::wstring_view content = Piece(begin, end);
    auto start = static_cast<std::size_t>(QxXmlScan::SkipSpace(content, 0));
    if (start < content.size() && content[start] == L'"')
        ++start; // a quoted token starts after the quote
    // Room for "<![CDATA[" and "]]>", which are 12 characters.
    if (start + 11 < content.size() && content[start] == L'<' &&
        content.substr(start + 1, CDataOpen.size()) == CDataOpen) {
        const auto first = static_cast<std::int32_t>(start + 1 + CDataOpen.size());
        const std::int32_t close = QxXmlScan::FindTerminator(content, CDataClose, first);
        if (close < static_cast<std::int32_t>(content.size())) {
            raw = true;
            return Piece(begin + first, begin + close);
        }
    }
    return content;
}

QxString QxXmlParser::Unescaped(std::wstring_view text) const {
    QxXmlText decoded;
    decoded.AppendUnescaped(text);
    return m_texts.Make(decoded.View());
}

QxString QxXmlParser::Data(std::int32_t element) const {
    bool raw = false;
    const std::wstring_view content = Content(element, raw);
    return raw || !HasEntity(content) ? m_texts.Make(content) : Unescaped(content);
}

/// For a part of the document.
bool QxXmlParser::HasEntity(std::wstring_view content) const noexcept {
    const auto from = static_cast<std::int32_t>(content.data() - GetDocument().data());
    return QxXmlScan::Occurs(GetDocument(), L'&', from, from + static_cast<std::int32_t>(content.size()));
}

QxString QxXmlParser::GetData() const {
    return Data(m_current);
}

QxString QxXmlParser::GetChildData() const {
    return Data(m_currentChild);
}

/// Reads a value up to its closing quote. False without one.
inline bool QxXmlParser::ReadQuoted(std::int32_t from, std::int32_t& next,
                                    AttributeValue& value) const noexcept {
    const std::wstring_view text = Text();
    const std::int32_t quote = QxXmlScan::FindQuote(text, from, value.hasEntity);
    if (quote == static_cast<std::int32_t>(text.size()))
        return false;
    value.text = Piece(from, quote);
    next = quote + 1;
    return true;
}

/// Fast path for ' name="value"' with the sought name: most readers ask in document order.
bool QxXmlParser::ReadSought(std::int32_t& next, const SoughtName& name,
                             AttributePos& attribute) const noexcept {
    const std::wstring_view text = Text();
    const std::size_t start = static_cast<std::size_t>(next) + 1;
    const std::size_t end = start + name.size();
    if (!name.IsPlain() || name.empty() || name.front() == L'"' || end + 1 >= text.size() ||
        text[start - 1] != L' ' || text[end] != L'=' || text[end + 1] != L'"' ||
        !QxXmlScan::Equal(text.substr(start, name.size()), name))
        return false;
    attribute.name = text.substr(start, name.size());
    attribute.hasValue = true;
    return ReadQuoted(static_cast<std::int32_t>(end) + 2, next, attribute.value);
}

/// Fast path for ' name="value"', as nearly all attributes are. False means: apply the token rules.
bool QxXmlParser::ReadPlainAttribute(std::int32_t& next, AttributePos& attribute) const noexcept {
    const std::wstring_view text = Text();
    const auto length = static_cast<std::int32_t>(text.size());
    const std::int32_t name = QxXmlScan::SkipSpace(text, next);
    const std::int32_t equals = name + QxXmlScan::WordLength(text, name);
    const auto is = [&text](std::int32_t offset, wchar_t character) {
        return text[static_cast<std::size_t>(offset)] == character;
    };
    if (equals == name || equals + 1 >= length || !is(equals, L'=') || !is(equals + 1, L'"') ||
        is(name, L'"'))
        return false;
    attribute.name = QxXmlScan::WithoutPrefix(Piece(name, equals));
    attribute.hasValue = true;
    return ReadQuoted(equals + 2, next, attribute.value);
}

/// Reads the next name of a start tag and its value. False at the end of the tag.
bool QxXmlParser::ReadAttribute(std::int32_t& next, AttributePos& attribute) const noexcept {
    if (ReadPlainAttribute(next, attribute))
        return true;
    const std::wstring_view text = Text();
    Token token;
    token.next = next;
    do {
        if (!QxXmlScan::NextToken(text, token) || token.IsUnquoted(text, L'>') ||
            token.IsUnquoted(text, L'/'))
            return false;
    } while (token.quoted || token.IsUnquoted(text, L'='));
    next = token.next;
    attribute.name = QxXmlScan::WithoutPrefix(token.In(text));
    attribute.hasValue = QxXmlScan::NextToken(text, token) && token.IsUnquoted(text, L'=') &&
                         QxXmlScan::NextToken(text, token) && token.quoted;
    if (attribute.hasValue) {
        attribute.value = {token.In(text), true};
        next = token.next;
    }
    return true;
}

/// Finds the value of the first attribute with the name; null if it is missing or has no quoted value.
const QxXmlParser::AttributeValue* QxXmlParser::FindValue(std::int32_t element,
                                                          const SoughtName& name) const noexcept {
    if (element == 0)
        return nullptr;
    AttributeScan& scan = m_attributes;
    if (scan.element != element) {
        Token tagName;
        tagName.next = At(element).startTagOpen + 1;
        QxXmlScan::NextToken(Text(), tagName);
        scan.element = element;
        scan.next = tagName.next;
        scan.count = 0;
    }
    for (std::size_t i = 0; i < scan.count; ++i) {
        const AttributePos& attribute = scan.attributes[i];
        if (QxXmlScan::Equal(attribute.name, name))
            return attribute.hasValue ? &attribute.value : nullptr;
    }
    for (std::int32_t next = scan.next;;) {
        AttributePos& attribute = scan.attributes[scan.count];
        const bool sought = ReadSought(next, name, attribute);
        if (!sought && !ReadAttribute(next, attribute))
            return nullptr;
        if (scan.count < AttributeScan::Most) {
            ++scan.count;
            scan.next = next;
        }
        if (sought || QxXmlScan::Equal(attribute.name, name))
            return attribute.hasValue ? &attribute.value : nullptr;
    }
}

QxString QxXmlParser::TextOf(const AttributeValue& value) const {
    return value.hasEntity ? Unescaped(value.text) : m_texts.Make(value.text);
}

bool QxXmlParser::Attribute(std::int32_t element, const SoughtName& name, QxString& value) const {
    const AttributeValue* const found = FindValue(element, name);
    if (found)
        value = TextOf(*found);
    return found != nullptr;
}

bool QxXmlParser::FindAttribute(const SoughtName& name, QxString& value) const {
    return Attribute(m_current, name, value);
}

bool QxXmlParser::FindChildAttribute(const SoughtName& name, QxString& value) const {
    return Attribute(m_currentChild, name, value);
}

QxString QxXmlParser::GetAttribute(const SoughtName& name) const {
    const AttributeValue* const found = FindValue(m_current, name);
    return found ? TextOf(*found) : QxString();
}

QxString QxXmlParser::GetChildAttribute(const SoughtName& name) const {
    const AttributeValue* const found = FindValue(m_currentChild, name);
    return found ? TextOf(*found) : QxString();
}

std::wstring_view QxXmlParser::RawAttribute(std::int32_t element, const SoughtName& name) const noexcept {
    const AttributeValue* const value = FindValue(element, name);
    return value ? value->text : std::wstring_view();
}

std::wstring_view QxXmlParser::GetRawAttribute(const SoughtName& name) const noexcept {
    return RawAttribute(m_current, name);
}

/// Includes white space after the element, so that a copied element keeps its line end.
std::wstring_view QxXmlParser::SubDocument(std::int32_t element) const noexcept {
    if (element == 0)
        return {};
    const std::int32_t end = At(element).endTagClose + 1;
    const std::int32_t next = At(element).scanPos;
    const bool onlySpace = QxXmlScan::SkipSpace(GetDocument(), end) == next;
    return Piece(At(element).startTagOpen, onlySpace ? next : end);
}

std::wstring_view QxXmlParser::GetSubDocument() const noexcept {
    return SubDocument(m_current);
}

std::wstring_view QxXmlParser::GetChildSubDocument() const noexcept {
    return SubDocument(m_currentChild);
}

// Numbers and flags need no unescaping: no entity encodes a digit or letter.

std::int32_t QxXmlParser::GetChildNumber() const noexcept {
    bool raw = false;
    return QxMisc::ParseInt32(Content(m_currentChild, raw));
}

bool QxXmlParser::GetChildFlag() const noexcept {
    bool raw = false;
    return QxMisc::ParseBool(Content(m_currentChild, raw));
}

std::int32_t QxXmlParser::GetChildAttributeNumber(const SoughtName& name) const noexcept {
    return QxMisc::ParseInt32(RawAttribute(m_currentChild, name));
}

bool QxXmlParser::GetChildAttributeFlag(const SoughtName& name) const noexcept {
    return QxMisc::ParseBool(RawAttribute(m_currentChild, name));
}
