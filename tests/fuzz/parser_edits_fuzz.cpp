// Input: a line of edits, then a document. After each edit the positions equal those of a fresh parse, and
// written values read back.

#include "Fuzzing.h"

#include "common/xml/QxXmlParser.h"

#include <array>

using Fuzzing::Require;
using ElemPos = QxXmlParser::ElemPos;

namespace {

constexpr std::size_t MaxEdits = 12;
constexpr std::array<std::wstring_view, 4> Names = {L"a", L"b", L"Version", L"x-1"};
constexpr std::array<std::wstring_view, 8> Values = {L"",    L"1", L"<&>",   L"\"'",
                                                     L"]]>", L" ", L"&amp;", L"a>b\"c"};

bool SameOffsets(const ElemPos& a, const ElemPos& b) {
    return a.startTagOpen == b.startTagOpen && a.startTagClose == b.startTagClose &&
           a.endTagOpen == b.endTagOpen && a.endTagClose == b.endTagClose && a.scanPos == b.scanPos;
}

/// Compares the first top-level elements in document order, because edits change the order of the entries.
void RequireSameElements(const QxXmlParser& edited, const QxXmlParser& fresh) {
    const ElemPos* const a = edited.Positions();
    const ElemPos* const b = fresh.Positions();
    std::int32_t inA = a[0].firstChild;
    const std::int32_t first = inA;
    for (std::int32_t inB = b[0].firstChild; inB != 0;) {
        Require(inA != 0 && SameOffsets(a[inA], b[inB]), "positions differ from a fresh parse");
        Require((a[inA].firstChild == 0) == (b[inB].firstChild == 0), "children differ from a fresh parse");
        if (b[inB].firstChild != 0) {
            inA = a[inA].firstChild;
            inB = b[inB].firstChild;
            continue;
        }
        while (inB != 0 && b[inB].nextSibling == 0) {
            Require(inA == first || a[inA].nextSibling == 0, "more siblings than in a fresh parse");
            inA = a[inA].parent;
            inB = b[inB].parent;
        }
        inA = a[inA].nextSibling;
        inB = b[inB].nextSibling;
    }
}

/// The new value may be unreadable: an existing attribute in an unreadable form, such as without quotes,
/// hides it.
bool SetAttribute(QxXmlParser& parser, bool (QxXmlParser::*set)(std::wstring_view, std::wstring_view),
                  bool (QxXmlParser::*find)(const SoughtName&, QxString&) const, std::wstring_view name,
                  std::wstring_view value) {
    QxString read;
    const bool hadOne = (parser.*find)(name, read);
    if (!(parser.*set)(name, value))
        return false;
    const bool hasOne = (parser.*find)(name, read);
    Require(hasOne || !hadOne, "an attribute is lost");
    Require(!hasOne || read.view() == value, "an attribute reads differently");
    return true;
}

/// Does one edit or move. Returns whether the text changed.
bool Apply(QxXmlParser& parser, unsigned char command) {
    const std::wstring_view name = Names[command >> 3 & 3];
    const std::wstring_view value = Values[command >> 5];
    switch (command & 7) {
    case 0:
        parser.AddElement(name, value);
        Require(parser.GetTagName() == name && parser.GetData() == value,
                "an added element reads differently");
        return true;
    case 1:
        if (!parser.AddChildElement(name, value))
            return false;
        Require(parser.GetChildTagName() == name && parser.GetChildData() == value,
                "an added child reads differently");
        return true;
    case 2: {
        const bool set = command & 8 ? parser.SetData(value) : parser.SetChildData(value);
        Require(!set || (command & 8 ? parser.GetData() : parser.GetChildData()) == value,
                "data reads differently");
        return set;
    }
    case 3:
        return SetAttribute(parser, &QxXmlParser::SetAttribute, &QxXmlParser::FindAttribute, name, value);
    case 4:
        return SetAttribute(parser, &QxXmlParser::SetChildAttribute, &QxXmlParser::FindChildAttribute, name,
                            value);
    case 5:
        return parser.FindChildElement(), false;
    case 6:
        return parser.IntoElement(), false;
    default:
        return (command & 8 ? parser.OutOfElement() : parser.FindElement()), false;
    }
}

} // namespace

void RunInput(std::string_view bytes) {
    const std::string_view commands = Fuzzing::TakeLine(bytes).substr(0, MaxEdits);
    QxXmlParser parser;
    parser.SetDocument(Fuzzing::Widen(bytes));
    parser.FindElement();
    for (const char command : commands) {
        if (!Apply(parser, static_cast<unsigned char>(command)))
            continue;
        QxXmlParser fresh;
        Require(fresh.SetDocument(parser.GetDocument()), "an edited document does not parse");
        RequireSameElements(parser, fresh);
    }
}
