// Fuzzing of the parser, with libFuzzer: clang++ -fsanitize=fuzzer,address,undefined, see run.sh.
// The first byte chooses whether the rest is edited. What must hold for any input: every position lies within
// the text, a sub-document parses again, edits leave the positions that a new parse gives.

#include "../unit/XmlDump.h"

#include "common/QxXmlParser.h"

#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

/// Visits the whole tree through the public interface, reading everything on the way.
void ReadAll(QxXmlParser& parser) {
    QxString value;
    for (int depth = 0; depth >= 0;) {
        if (parser.FindChildElement()) {
            const std::wstring subDocument(parser.GetChildSubDocument());
            if (subDocument.size() < 200) {
                QxXmlParser part;
                Require(part.SetDocument(subDocument), "a sub-document does not parse");
            }
            parser.FindChildAttribute(L"a", value);
            Require(parser.GetChildData().size() <= parser.GetDocument().size(), "data longer than the text");
            parser.IntoElement();
            ++depth;
        } else {
            parser.OutOfElement();
            --depth;
        }
    }
}

void Edit(QxXmlParser& parser, unsigned choice) {
    switch (choice % 8) {
    case 0:
        parser.AddElement(L"new", L"<");
        break;
    case 1:
        parser.AddChildElement(L"new", L"");
        break;
    case 2:
        parser.SetChildData(L"&");
        break;
    case 3:
        parser.SetAttribute(L"a", L"\"");
        break;
    case 4:
        parser.SetChildAttribute(L"b", L"");
        break;
    case 5:
        parser.FindChildElement();
        break;
    case 6:
        parser.IntoElement();
        break;
    default:
        parser.OutOfElement();
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    if (size == 0)
        return 0;
    const std::wstring text(bytes + 1, bytes + size);
    QxXmlParser parser;
    if (!parser.SetDocument(text)) {
        Require(parser.PositionCount() == 1, "elements after a failure");
        return 0;
    }
    const char* const broken = FindBrokenPosition(parser);
    Require(broken == nullptr, broken);
    ReadAll(parser);
    parser.ResetPosition();
    parser.FindElement();
    for (unsigned step = 0; step < bytes[0] % 16; ++step) {
        Edit(parser, bytes[size - 1 - step % size]);
        QxXmlParser again;
        Require(again.SetDocument(parser.GetDocument()), "an edited document does not parse");
        Require(DumpFirstElement(parser) == DumpElements(again),
                "an edit leaves other positions than a parse");
    }
    return 0;
}
