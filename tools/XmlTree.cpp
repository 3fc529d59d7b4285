#include "XmlTree.h"

#include "Console.h"

#include "common/xml/QxXmlParser.h"

#include <algorithm>

namespace {

constexpr std::wstring_view Blanks = L" \t\r\n";

std::wstring_view WithoutPrefix(std::wstring_view name) {
    return name.substr(name.find(L':') + 1); // without a colon npos + 1, that is 0
}

/// The attributes of a start tag. The parser looks values up by name, but does not list the names.
std::vector<XmlTree::Attribute> AttributesOf(const QxXmlParser& parser, std::wstring_view markup,
                                             bool isChild) {
    std::vector<XmlTree::Attribute> attributes;
    const auto offset = static_cast<std::size_t>(markup.data() - parser.GetDocument().data());
    const std::wstring_view tag = markup.substr(0, markup.find(L'>'));
    std::size_t at = tag.find_first_of(Blanks);
    while ((at = tag.find_first_not_of(Blanks, at)) != std::wstring_view::npos) {
        const std::size_t equals = tag.find(L'=', at);
        const std::size_t open = tag.find_first_of(L"\"'", equals);
        if (equals == std::wstring_view::npos || open == std::wstring_view::npos)
            break;
        std::wstring_view name = tag.substr(at, equals - at);
        name = name.substr(0, name.find_first_of(Blanks));
        const bool isNamespace = name == L"xmlns" || name.starts_with(L"xmlns:");
        name = WithoutPrefix(name);
        const std::size_t close = std::min(tag.find(tag[open], open + 1), tag.size());
        XmlTree::Attribute attribute{std::wstring(name), std::wstring(tag.substr(open + 1, close - open - 1)),
                                     tag[open] == L'"', offset + at};
        if (attribute.isRead)
            attribute.value = (isChild ? parser.GetChildAttribute(name) : parser.GetAttribute(name)).view();
        if (!isNamespace)
            attributes.push_back(std::move(attribute));
        at = std::min(close + 1, tag.size());
    }
    return attributes;
}

std::vector<std::size_t> LineStarts(std::wstring_view text) {
    std::vector<std::size_t> starts{0};
    for (std::size_t at = text.find(L'\n'); at != std::wstring_view::npos; at = text.find(L'\n', at + 1))
        starts.push_back(at + 1);
    return starts;
}

} // namespace

const XmlTree::Attribute* XmlTree::Element::Find(std::wstring_view attribute) const noexcept {
    const auto found = std::find_if(attributes.begin(), attributes.end(),
                                    [&](const Attribute& a) { return a.isRead && a.name == attribute; });
    return found == attributes.end() ? nullptr : &*found;
}

bool XmlTree::Parse(std::wstring_view text) {
    m_elements.clear();
    m_lineStarts = LineStarts(text);
    QxXmlParser parser;
    if (!parser.SetDocument(text) || !parser.FindElement({}, true)) {
        m_error = text.empty() ? L"the file is empty" : std::wstring(parser.GetError().view());
        return false;
    }
    const auto offsetOf = [&](std::wstring_view markup) {
        return static_cast<std::size_t>(markup.data() - parser.GetDocument().data());
    };
    m_elements.push_back({std::wstring(WithoutPrefix(parser.GetTagName())),
                          std::wstring(parser.GetData().view()),
                          offsetOf(parser.GetSubDocument()),
                          Root,
                          AttributesOf(parser, parser.GetSubDocument(), false),
                          {}});
    // Iterative, because input can nest deeply.
    for (std::size_t current = Root;;) {
        if (parser.FindChildElement()) {
            const std::wstring_view markup = parser.GetChildSubDocument();
            m_elements.push_back({std::wstring(WithoutPrefix(parser.GetChildTagName())),
                                  std::wstring(parser.GetChildData().view()),
                                  offsetOf(markup),
                                  current,
                                  AttributesOf(parser, markup, true),
                                  {}});
            const std::size_t child = m_elements.size() - 1;
            m_elements[current].children.push_back(child);
            if (child % 65536 == 0)
                Console::Progress(L"Parsing: " + std::to_wstring(child) + L" elements");
            parser.IntoElement();
            current = child;
        } else if (current != Root) {
            parser.OutOfElement();
            current = m_elements[current].parent;
        } else {
            Console::EndProgress();
            return true;
        }
    }
}

XmlTree::Place XmlTree::PlaceOf(std::size_t offset) const noexcept {
    const auto behind = std::upper_bound(m_lineStarts.begin(), m_lineStarts.end(), offset);
    return {static_cast<std::size_t>(behind - m_lineStarts.begin()), offset - *(behind - 1) + 1};
}
