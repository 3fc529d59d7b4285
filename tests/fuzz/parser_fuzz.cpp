// Input: any text. The parser agrees with the reference parser; navigation agrees with the positions; each
// child's sub-document parses to the same elements; unescaping reverses escaping.

#include "Fuzzing.h"
#include "ReferenceParse.h"

#include "common/xml/QxXmlText.h"

#include <algorithm>

using Fuzzing::Require;
using ElemPos = QxXmlParser::ElemPos;

namespace {

bool IsSame(const ElemPos& a, const ElemPos& b) {
    return a.startTagOpen == b.startTagOpen && a.startTagClose == b.startTagClose &&
           a.endTagOpen == b.endTagOpen && a.endTagClose == b.endTagClose && a.scanPos == b.scanPos &&
           a.parent == b.parent && a.firstChild == b.firstChild && a.nextSibling == b.nextSibling;
}

/// The offsets are brackets in the text, in order, inside the parent and after the previous sibling.
void CheckPosition(const QxXmlParser& parser, std::size_t element) {
    const std::wstring_view text = parser.GetDocument();
    const ElemPos* const all = parser.Positions();
    const ElemPos& at = all[element];
    const auto length = static_cast<std::int32_t>(text.size());
    Require(at.startTagOpen >= 0 && at.startTagOpen < at.startTagClose && at.endTagClose < at.scanPos &&
                at.scanPos <= length,
            "offsets out of order or outside the text");
    Require(at.endTagClose == at.startTagClose
                ? at.endTagOpen + 1 == at.startTagClose && at.firstChild == 0
                : at.startTagClose < at.endTagOpen && at.endTagOpen < at.endTagClose,
            "end tag out of order");
    const auto character = [&](std::int32_t offset) { return text[static_cast<std::size_t>(offset)]; };
    Require(character(at.startTagOpen) == L'<' && character(at.startTagClose) == L'>' &&
                character(at.endTagClose) == L'>' &&
                (character(at.endTagOpen) == L'<' || character(at.endTagOpen) == L'/'),
            "a tag offset is not at its bracket");
    Require(std::find(text.begin() + at.endTagClose, text.begin() + at.scanPos, L'<') ==
                    text.begin() + at.scanPos &&
                (at.scanPos == length || character(at.scanPos) == L'<'),
            "the scan position is not at the next tag");
    if (at.parent != 0)
        Require(at.startTagOpen > all[at.parent].startTagClose && at.endTagClose < all[at.parent].endTagOpen,
                "an element is outside its parent");
    if (at.nextSibling != 0)
        Require(all[at.nextSibling].startTagOpen >= at.scanPos && all[at.nextSibling].parent == at.parent,
                "siblings overlap or differ in their parent");
}

void CheckSameAsReference(const QxXmlParser& parser, bool parsed, const ReferenceParse& reference) {
    Require(parsed == reference.Succeeded(), "the reference has another result");
    Require(parser.GetError().view() == reference.Error(), "the reference has another error");
    Require(parser.PositionCount() == reference.Positions().size(), "the reference has other elements");
    for (std::size_t element = 1; element < parser.PositionCount(); ++element) {
        Require(IsSame(parser.Positions()[element], reference.Positions()[element]),
                "the reference has another position");
        CheckPosition(parser, element);
    }
}

void CheckAttributes(bool (QxXmlParser::*find)(const SoughtName&, QxString&) const, const QxXmlParser& parser,
                     const ReferenceParse& reference, std::size_t element) {
    QxString value;
    std::wstring expected;
    for (const wchar_t* const name : {L"a", L"Version"}) {
        const bool found = (parser.*find)(name, value);
        Require(found == reference.Attribute(element, name, expected), "attribute found");
        Require(!found || value.view() == expected, "attribute value");
    }
}

/// Every way of reading the current child returns this entry.
void CheckChild(const QxXmlParser& parser, const ReferenceParse& reference, std::size_t element) {
    Require(parser.GetChildTagName() == reference.TagName(element), "tag name");
    Require(parser.GetChildData().view() == reference.Data(element), "data");
    Require(parser.GetChildSubDocument() == reference.SubDocument(element), "sub-document");
    CheckAttributes(&QxXmlParser::FindChildAttribute, parser, reference, element);
}

/// After a parse, the entries are in document order.
void CheckNavigation(QxXmlParser& parser, const ReferenceParse& reference) {
    Require(parser.FindElement() && !parser.OutOfElement(), "the root is not at the top");
    std::size_t element = 1;
    for (int depth = 0; depth >= 0;) {
        if (parser.FindChildElement()) {
            CheckChild(parser, reference, ++element);
            Require(parser.IntoElement(), "cannot enter the child");
            ++depth;
        } else {
            Require(parser.OutOfElement() == (depth > 0), "leaving the element");
            --depth;
        }
    }
    Require(element + 1 == parser.PositionCount(), "navigation misses an element");
    Require(!parser.FindElement(), "a second element at the top");
}

/// Entering the current child's sub-document gives the values of its text parsed alone, even where a start
/// tag ends inside a quoted value.
void CheckInsideSubDocument(QxXmlParser& parser, std::size_t first) {
    const ReferenceParse part(parser.GetChildSubDocument());
    Require(parser.IntoSubDocument(), "cannot enter the sub-document");
    for (std::size_t element = 1; element < part.Positions().size(); ++element) {
        parser.SelectElement(static_cast<std::int32_t>(first + element - 1));
        Require(parser.GetTagName() == part.TagName(element), "tag name in a sub-document");
        Require(parser.GetData().view() == part.Data(element), "data in a sub-document");
        CheckAttributes(&QxXmlParser::FindAttribute, parser, part, element);
    }
    parser.SelectElement(static_cast<std::int32_t>(first));
    parser.OutOfSubDocument();
}

/// A sub-document's entries equal those of the document from `first` on, relative to its start.
void CheckSubDocument(const QxXmlParser& parser, std::wstring_view subDocument, std::size_t first) {
    const ElemPos* const whole = parser.Positions();
    QxXmlParser part;
    Require(part.SetDocument(subDocument), "a sub-document does not parse");
    Require(first + part.PositionCount() - 1 <= parser.PositionCount(), "a sub-document has more elements");
    const std::int32_t offset = whole[first].startTagOpen;
    const auto index = static_cast<std::int32_t>(first) - 1;
    const auto link = [&](std::int32_t element) { return element != 0 ? element + index : 0; };
    for (std::size_t element = 1; element < part.PositionCount(); ++element) {
        ElemPos at = part.Positions()[element];
        for (std::int32_t* field :
             {&at.startTagOpen, &at.startTagClose, &at.endTagOpen, &at.endTagClose, &at.scanPos})
            *field += offset;
        at.parent = element == 1 ? whole[first].parent : link(at.parent);
        at.firstChild = link(at.firstChild);
        at.nextSibling = element == 1 ? whole[first].nextSibling : link(at.nextSibling);
        if (element == 1)
            at.scanPos = whole[first].scanPos; // the text may end before the next tag
        Require(IsSame(at, whole[first + element - 1]), "a sub-document has another element");
    }
}

void CheckSubDocuments(QxXmlParser& parser) {
    parser.ResetPosition();
    parser.FindElement();
    CheckSubDocument(parser, parser.GetSubDocument(), 1);
    for (std::int32_t child = parser.Positions()[1].firstChild; child != 0;
         child = parser.Positions()[child].nextSibling) {
        Require(parser.FindChildElement(), "a child is missing");
        CheckSubDocument(parser, parser.GetChildSubDocument(), static_cast<std::size_t>(child));
        CheckInsideSubDocument(parser, static_cast<std::size_t>(child));
    }
}

void CheckEscaping(const std::wstring& text) {
    for (const auto kind : {QxXmlText::Escape::Data, QxXmlText::Escape::Attribute}) {
        QxXmlText out;
        out.AppendEscaped(text, kind);
        const std::wstring_view escaped = out.View();
        const auto isMarkup = [&](wchar_t character) {
            return character == L'<' || character == L'>' ||
                   (kind == QxXmlText::Escape::Attribute && (character == L'"' || character == L'\''));
        };
        Require(std::none_of(escaped.begin(), escaped.end(), isMarkup), "markup remains");
        QxXmlText back;
        back.AppendUnescaped(escaped);
        Require(back.View() == text, "unescaping does not reverse escaping");
    }
    QxXmlText unescaped;
    unescaped.AppendUnescaped(text);
    Require(unescaped.View() == ReferenceParse::Unescape(text), "the reference unescapes differently");
}

} // namespace

void RunInput(std::string_view bytes) {
    const std::wstring text = Fuzzing::Widen(bytes);
    QxXmlParser parser;
    const bool parsed = parser.SetDocument(text);
    const ReferenceParse reference(text);
    CheckSameAsReference(parser, parsed, reference);
    if (parsed) {
        CheckNavigation(parser, reference);
        CheckSubDocuments(parser);
    }
    CheckEscaping(text);
}
