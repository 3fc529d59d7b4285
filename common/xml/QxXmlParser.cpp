// Navigation and reading, in place; only returned values are copied.

#include "QxXmlParser.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"

using QxXmlScan::Token;

namespace {

constexpr std::wstring_view CDataOpen = L"![CDATA[";
constexpr std::wstring_view CDataClose = L"]]>";

} // namespace

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

void QxXmlParser::SelectElement(std::int32_t element) noexcept {
    m_current = element;
    m_currentChild = 0;
}

bool QxXmlParser::HasName(std::int32_t element, const SoughtName& name) const noexcept {
    return name.IsPlain() ? HasPlainName(element, name)
                          : QxXmlScan::Equal(QxXmlScan::WithoutPrefix(TagName(element)), name);
}

/// Requires QxXmlScan::IsPlainName(name).
bool QxXmlParser::HasPlainName(std::int32_t element, std::wstring_view name) const noexcept {
    const ElemPos& position = At(element);
    const std::wstring_view inside = Piece(position.startTagOpen + 1, position.startTagClose);
    const auto behind = static_cast<std::size_t>(position.startTagOpen) + 1 + name.size(); // at most the ">"
    if (inside.size() >= name.size() && QxXmlScan::EndsToken(m_document[behind]) &&
        QxXmlScan::Equal(inside.substr(0, name.size()), name))
        return true;
    // Without leading white space or a prefix, the name would have matched above.
    const auto length = static_cast<std::int32_t>(inside.size());
    if (length > 0 && !QxXmlScan::IsSpace(inside.front()) && QxXmlScan::Find(inside, L':', 0) == length)
        return false;
    return QxXmlScan::Equal(QxXmlScan::WithoutPrefix(TagName(element)), name);
}

/// The first element with the name among candidate and its later siblings; 0 if none.
std::int32_t QxXmlParser::FindFrom(std::int32_t candidate, const SoughtName& name) const noexcept {
    while (candidate != 0 && !name.empty() && !HasName(candidate, name))
        candidate = At(candidate).nextSibling;
    return candidate;
}

std::wstring_view QxXmlParser::TagName(std::int32_t element) const noexcept {
    return element != 0 ? QxXmlScan::TagName(m_document, At(element).startTagOpen) : std::wstring_view();
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
    if (QxXmlScan::Find(text, L'&', 0) == static_cast<std::int32_t>(text.size()))
        return m_texts.Make(text);
    QxXmlText decoded;
    decoded.AppendUnescaped(text);
    return m_texts.Make(decoded.View());
}

QxString QxXmlParser::Data(std::int32_t element) const {
    bool raw = false;
    const std::wstring_view content = Content(element, raw);
    return raw ? m_texts.Make(content) : Unescaped(content);
}

QxString QxXmlParser::GetData() const {
    return Data(m_current);
}

QxString QxXmlParser::GetChildData() const {
    return Data(m_currentChild);
}

/// Fast path for ' name="value"', as nearly all attributes are. False means: apply the token rules.
bool QxXmlParser::ReadPlainAttribute(std::int32_t& next, AttributePos& attribute) const noexcept {
    const auto length = static_cast<std::int32_t>(m_document.size());
    const std::int32_t name = QxXmlScan::SkipSpace(m_document, next);
    const std::int32_t equals = name + QxXmlScan::WordLength(m_document, name);
    const auto is = [this](std::int32_t offset, wchar_t character) {
        return m_document[static_cast<std::size_t>(offset)] == character;
    };
    if (equals == name || equals + 1 >= length || !is(equals, L'=') || !is(equals + 1, L'"') ||
        is(name, L'"'))
        return false;
    const std::int32_t value = equals + 2;
    const std::int32_t quote = QxXmlScan::Find(m_document, L'"', value);
    if (quote == length)
        return false;
    next = quote + 1;
    attribute = {QxXmlScan::WithoutPrefix(Piece(name, equals)), {value, quote - 1, next, true}, true};
    return true;
}

/// Reads the next name of a start tag and its value. False at the end of the tag.
bool QxXmlParser::ReadAttribute(std::int32_t& next, AttributePos& attribute) const noexcept {
    if (ReadPlainAttribute(next, attribute))
        return true;
    Token token;
    token.next = next;
    do {
        if (!QxXmlScan::NextToken(m_document, token) || token.IsUnquoted(m_document, L'>') ||
            token.IsUnquoted(m_document, L'/'))
            return false;
    } while (token.quoted || token.IsUnquoted(m_document, L'='));
    next = token.next;
    attribute.name = QxXmlScan::WithoutPrefix(token.In(m_document));
    attribute.hasValue = QxXmlScan::NextToken(m_document, token) && token.IsUnquoted(m_document, L'=') &&
                         QxXmlScan::NextToken(m_document, token) && token.quoted;
    if (attribute.hasValue) {
        attribute.value = token;
        next = token.next;
    }
    return true;
}

/// Finds the value of the first attribute with the name.
bool QxXmlParser::FindValue(std::int32_t element, std::wstring_view name, Token& value) const noexcept {
    if (element == 0)
        return false;
    AttributeScan& scan = m_attributes;
    if (scan.element != element) {
        Token tagName;
        tagName.next = At(element).startTagOpen + 1;
        QxXmlScan::NextToken(m_document, tagName);
        scan.element = element;
        scan.next = tagName.next;
        scan.count = 0;
    }
    const auto matches = [&](const AttributePos& attribute) {
        if (!QxXmlScan::Equal(attribute.name, name))
            return false;
        value = attribute.value;
        return true;
    };
    for (std::size_t i = 0; i < scan.count; ++i) {
        if (matches(scan.attributes[i]))
            return scan.attributes[i].hasValue;
    }
    AttributePos attribute;
    for (std::int32_t next = scan.next; ReadAttribute(next, attribute);) {
        if (scan.count < AttributeScan::Most) {
            scan.attributes[scan.count++] = attribute;
            scan.next = next;
        }
        if (matches(attribute))
            return attribute.hasValue;
    }
    return false;
}

bool QxXmlParser::Attribute(std::int32_t element, std::wstring_view name, QxString& value) const {
    Token token;
    if (!FindValue(element, name, token))
        return false;
    value = Unescaped(token.In(m_document));
    return true;
}

bool QxXmlParser::FindAttribute(std::wstring_view name, QxString& value) const {
    return Attribute(m_current, name, value);
}

bool QxXmlParser::FindChildAttribute(std::wstring_view name, QxString& value) const {
    return Attribute(m_currentChild, name, value);
}

QxString QxXmlParser::GetAttribute(std::wstring_view name) const {
    QxString value;
    Attribute(m_current, name, value);
    return value;
}

QxString QxXmlParser::GetChildAttribute(std::wstring_view name) const {
    QxString value;
    Attribute(m_currentChild, name, value);
    return value;
}

std::wstring_view QxXmlParser::RawAttribute(std::int32_t element, std::wstring_view name) const noexcept {
    Token token;
    return FindValue(element, name, token) ? token.In(m_document) : std::wstring_view();
}

std::wstring_view QxXmlParser::GetRawAttribute(std::wstring_view name) const noexcept {
    return RawAttribute(m_current, name);
}

/// Includes white space after the element, so that a copied element keeps its line end.
std::wstring_view QxXmlParser::SubDocument(std::int32_t element) const noexcept {
    if (element == 0)
        return {};
    const std::int32_t end = At(element).endTagClose + 1;
    const std::int32_t next = At(element).scanPos;
    const bool onlySpace = QxXmlScan::SkipSpace(m_document, end) == next;
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

std::int32_t QxXmlParser::GetChildAttributeNumber(std::wstring_view name) const noexcept {
    return QxMisc::ParseInt32(RawAttribute(m_currentChild, name));
}

bool QxXmlParser::GetChildAttributeFlag(std::wstring_view name) const noexcept {
    return QxMisc::ParseBool(RawAttribute(m_currentChild, name));
}
