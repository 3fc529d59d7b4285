#include "XmlTree.h"

#include "common/xml/QxXmlScan.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace {

constexpr std::wstring_view Blanks = L" \t\r\n";

std::vector<std::size_t> LineStarts(std::wstring_view text) {
    std::vector<std::size_t> starts{0};
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t at = QxXmlScan::Find(text, L'\n', 0); at < length;
         at = QxXmlScan::Find(text, L'\n', at + 1))
        starts.push_back(static_cast<std::size_t>(at) + 1);
    return starts;
}

std::wstring_view Piece(const XmlTree& tree, std::int32_t from, std::int32_t to) {
    return tree.Document().substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

} // namespace

const QxXmlParser::ElemPos& XmlTree::Element::Position() const noexcept {
    return m_tree->m_parser->Positions()[m_index];
}

std::wstring_view XmlTree::Element::Name() const noexcept {
    return QxXmlScan::WithoutPrefix(QxXmlScan::TagName(m_tree->Document(), Position().startTagOpen));
}

std::wstring XmlTree::Element::Text() const {
    m_tree->m_parser->SelectElement(m_index);
    return std::wstring(m_tree->m_parser->GetData().view());
}

std::wstring_view XmlTree::Element::Markup() const noexcept {
    return Piece(*m_tree, Position().startTagOpen, Position().endTagClose + 1);
}

std::wstring_view XmlTree::Element::RawText() const noexcept {
    const QxXmlParser::ElemPos& position = Position();
    const bool isEmpty = position.firstChild != 0 || position.endTagOpen <= position.startTagClose;
    return isEmpty ? std::wstring_view() : Piece(*m_tree, position.startTagClose + 1, position.endTagOpen);
}

std::wstring_view XmlTree::Element::StartTag() const noexcept {
    return Piece(*m_tree, Position().startTagOpen, Position().startTagClose);
}

bool XmlTree::Element::HasAttributes() const noexcept {
    const std::wstring_view tag = StartTag();
    return std::any_of(tag.begin(), tag.end(), QxXmlScan::IsSpace);
}

/// The parser looks values up by name, but does not list the names.
std::vector<XmlTree::Attribute> XmlTree::Element::Attributes() const {
    std::vector<Attribute> attributes;
    const std::wstring_view tag = StartTag();
    m_tree->m_parser->SelectElement(m_index);
    std::size_t at = tag.find_first_of(Blanks);
    while ((at = tag.find_first_not_of(Blanks, at)) != std::wstring_view::npos) {
        const std::size_t equals = tag.find(L'=', at);
        const std::size_t open = tag.find_first_of(L"\"'", equals);
        if (equals == std::wstring_view::npos || open == std::wstring_view::npos)
            break;
        std::wstring_view name = tag.substr(at, equals - at);
        name = name.substr(0, name.find_first_of(Blanks));
        const bool isNamespace = name == L"xmlns" || name.starts_with(L"xmlns:");
        name = QxXmlScan::WithoutPrefix(name);
        const std::size_t close = std::min(tag.find(tag[open], open + 1), tag.size());
        const std::wstring_view raw = tag.substr(open + 1, close - open - 1);
        Attribute attribute{std::wstring(name), std::wstring(raw), tag[open] == L'"', Offset() + at};
        if (attribute.isRead)
            attribute.value = m_tree->m_parser->GetAttribute(name).view();
        if (!isNamespace)
            attributes.push_back(std::move(attribute));
        at = std::min(close + 1, tag.size());
    }
    return attributes;
}

std::optional<XmlTree::Attribute> XmlTree::Element::Find(std::wstring_view attribute) const {
    for (Attribute& candidate : Attributes())
        if (candidate.isRead && candidate.name == attribute)
            return std::move(candidate);
    return std::nullopt;
}

XmlTree::Element XmlTree::Element::Child(std::wstring_view name) const noexcept {
    Element child = FirstChild();
    while (child && child.Name() != name)
        child = child.NextSibling();
    return child;
}

XmlTree::Element XmlTree::Element::Next() const noexcept {
    // The parser lists elements in document order.
    const auto next = static_cast<std::size_t>(m_index) + 1;
    return {m_tree, next <= m_tree->Count() ? m_index + 1 : 0};
}

bool XmlTree::Parse(std::wstring_view text) {
    m_lineStarts = LineStarts(text);
    if (m_parser->SetDocument(text))
        return true;
    m_error = text.empty() ? L"the file is empty" : std::wstring(m_parser->GetError().view());
    m_errorOffset = static_cast<std::size_t>(m_parser->GetErrorOffset());
    if (m_error.empty()) { // the library gives this no text
        m_error = L"End tag without a start tag";
        m_errorOffset = std::min(text.find(L"</"), text.size());
    }
    return false;
}

void XmlTree::Clear() {
    m_parser = std::make_unique<QxXmlParser>();
}

std::size_t XmlTree::RootEnd() const noexcept {
    return static_cast<std::size_t>(Root().Position().endTagClose) + 1;
}

XmlTree::Place XmlTree::PlaceOf(std::size_t offset) const {
    const auto behind = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), offset);
    const std::size_t start = *(behind - 1);
    // A large document may have a single line, and places are mostly asked for in order.
    if (m_columnAt < start || m_columnAt > offset)
        std::tie(m_columnAt, m_column) = std::pair(start, std::size_t{1});
    const std::wstring_view between = Document().substr(m_columnAt, offset - m_columnAt);
    const auto lowHalves =
        std::count_if(between.begin(), between.end(), [](wchar_t c) { return c >= 0xDC00 && c <= 0xDFFF; });
    m_column += between.size() - static_cast<std::size_t>(lowHalves);
    m_columnAt = offset;
    return {static_cast<std::size_t>(behind - m_lineStarts.begin()), m_column};
}
