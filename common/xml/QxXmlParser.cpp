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

bool QxXmlParser::FindElement(std::wstring_view name, bool restart) noexcept {
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

bool QxXmlParser::FindChildElement(std::wstring_view name, bool restart) noexcept {
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

/// Requires QxXmlScan::IsPlainName(name).
bool QxXmlParser::HasPlainName(std::int32_t element, std::wstring_view name) const noexcept {
    const std::wstring_view inside = Piece(At(element).startTagOpen + 1, At(element).startTagClose);
    if (QxXmlScan::StartsWithWord(inside, name))
        return true;
    // Without leading white space or a prefix, the name would have matched above.
    const auto length = static_cast<std::int32_t>(inside.size());
    if (length > 0 && !QxXmlScan::IsSpace(inside.front()) && QxXmlScan::Find(inside, L':', 0) == length)
        return false;
    return QxXmlScan::Equal(QxXmlScan::WithoutPrefix(TagName(element)), name);
}

/// The first element with the name among candidate and its later siblings; 0 if none.
std::int32_t QxXmlParser::FindFrom(std::int32_t candidate, std::wstring_view name) const noexcept {
    if (name.empty())
        return candidate;
    const bool plain = QxXmlScan::IsPlainName(name);
    while (candidate != 0 && !(plain ? HasPlainName(candidate, name)
                                     : QxXmlScan::Equal(QxXmlScan::WithoutPrefix(TagName(candidate)), name)))
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

/// Finds the value of the first attribute with the name.
bool QxXmlParser::FindValue(std::int32_t element, std::wstring_view name, Token& value) const noexcept {
    if (element == 0)
        return false;
    Token token;
    token.next = At(element).startTagOpen + 1;
    QxXmlScan::NextToken(m_document, token); // the tag name
    while (QxXmlScan::NextToken(m_document, token)) {
        if (token.quoted || token.IsUnquoted(m_document, L'='))
            continue;
        if (token.IsUnquoted(m_document, L'>') || token.IsUnquoted(m_document, L'/'))
            return false;
        if (!QxXmlScan::Equal(QxXmlScan::WithoutPrefix(token.In(m_document)), name))
            continue;
        if (!QxXmlScan::NextToken(m_document, token) || !token.IsUnquoted(m_document, L'='))
            return false;
        value = token;
        return QxXmlScan::NextToken(m_document, value) && value.quoted;
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
