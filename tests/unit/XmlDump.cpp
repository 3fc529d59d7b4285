#include "XmlDump.h"

namespace {

using ElemPos = QxXmlParser::ElemPos;

void AppendLine(std::wstring& dump, int depth, const ElemPos& at, std::wstring_view document) {
    const auto nameLength = QxXmlScan::WordLength(document, at.startTagOpen + 1);
    dump += std::to_wstring(depth) + L" ";
    dump +=
        document.substr(static_cast<std::size_t>(at.startTagOpen) + 1, static_cast<std::size_t>(nameLength));
    for (const std::int32_t offset :
         {at.startTagOpen, at.startTagClose, at.endTagOpen, at.endTagClose, at.scanPos})
        dump += L" " + std::to_wstring(offset);
    dump += L"\n";
}

std::wstring Dump(const QxXmlParser& parser, bool firstOnly) {
    std::wstring dump;
    const ElemPos* const positions = parser.Positions();
    int depth = 0;
    std::int32_t at = parser.PositionCount() == 0 ? 0 : positions[0].firstChild;
    while (at != 0) {
        AppendLine(dump, depth, positions[at], parser.GetDocument());
        if (positions[at].firstChild != 0) {
            at = positions[at].firstChild;
            ++depth;
            continue;
        }
        while (at != 0 && (positions[at].nextSibling == 0 || (firstOnly && depth == 0))) {
            at = positions[at].parent;
            --depth;
        }
        if (at != 0)
            at = positions[at].nextSibling;
    }
    return dump;
}

bool IsOrdered(const ElemPos& at, std::int32_t length) {
    const bool empty = at.endTagOpen + 1 == at.startTagClose && at.endTagClose == at.startTagClose;
    const bool withEndTag = at.startTagClose < at.endTagOpen && at.endTagOpen < at.endTagClose;
    return at.startTagOpen >= 0 && at.startTagOpen < at.startTagClose && (empty || withEndTag) &&
           at.endTagClose < at.scanPos && at.scanPos <= length;
}

} // namespace

std::wstring DumpElements(const QxXmlParser& parser) {
    return Dump(parser, false);
}

std::wstring DumpFirstElement(const QxXmlParser& parser) {
    return Dump(parser, true);
}

const char* FindBrokenPosition(const QxXmlParser& parser) {
    const auto count = static_cast<std::int32_t>(parser.PositionCount());
    const auto length = static_cast<std::int32_t>(parser.GetDocument().size());
    const ElemPos* const positions = parser.Positions();
    const std::wstring_view text = parser.GetDocument();
    for (std::int32_t index = 1; index < count; ++index) {
        const ElemPos& at = positions[index];
        if (!IsOrdered(at, length))
            return "offsets out of order or outside the text";
        if (text[static_cast<std::size_t>(at.startTagOpen)] != L'<' ||
            text[static_cast<std::size_t>(at.startTagClose)] != L'>' ||
            text[static_cast<std::size_t>(at.endTagClose)] != L'>')
            return "a tag offset is not at its bracket";
        if (at.scanPos < length && text[static_cast<std::size_t>(at.scanPos)] != L'<')
            return "the scan position is not at the next tag";
        for (const std::int32_t link : {at.parent, at.firstChild, at.nextSibling}) {
            if (link < 0 || link >= count)
                return "a link is not an entry";
        }
        if (at.firstChild != 0 && positions[at.firstChild].parent != index)
            return "a child has another parent";
        if (at.nextSibling != 0 && positions[at.nextSibling].startTagOpen < at.scanPos)
            return "siblings overlap";
        if (at.parent != 0 && (at.startTagOpen <= positions[at.parent].startTagClose ||
                               at.endTagClose >= positions[at.parent].endTagOpen))
            return "an element is outside its parent";
    }
    return nullptr;
}
