// Random markup: the parser with its fast paths gives the results of the plain parser in tests/fuzz.

#include "TestData.h"

#include "common/xml/QxXmlParser.h"
#include "tests/fuzz/ReferenceParse.h"

#include <catch2/catch.hpp>

#include <string>

namespace {

/// Mostly well-formed markup. Names and texts of all lengths around eight characters; prefixes, quotes,
/// blanks and characters whose low byte is a bracket.
class RandomMarkup {
public:
    explicit RandomMarkup(Choices& choices) : m_choices(choices) { Element(3); }

    std::wstring Text() {
        for (unsigned change = m_choices.Below(3); change > 0; --change)
            m_text[m_choices.Below(static_cast<unsigned>(m_text.size()))] = Of(L"<>/!?\"= :-[]ax\u013C");
        return m_text;
    }

private:
    wchar_t Of(std::wstring_view characters) {
        return characters[m_choices.Below(static_cast<unsigned>(characters.size()))];
    }
    bool Rarely() { return m_choices.Below(12) == 0; }
    std::wstring Name() {
        const std::wstring prefix = Rarely() ? L"p:" : L"";
        return prefix + (m_choices.Below(3) == 0 ? std::wstring(1, Of(L"ab")) : L"Version") +
               std::wstring(m_choices.Below(3) == 0 ? m_choices.Below(20) : 0, L'n');
    }
    void Attributes() {
        for (unsigned count = m_choices.Below(2) * m_choices.Below(12); count > 0; --count) {
            m_text += (Rarely() ? L"\t " : L" ") + Name() + (Rarely() ? L" = " : L"=");
            const std::wstring quote = Rarely() ? L"'" : L"\"";
            m_text += quote + std::wstring(m_choices.Below(20), L'v') + (Rarely() ? L"&lt;>" : L"") + quote;
        }
    }
    void Element(unsigned depth) {
        const std::wstring name = Name();
        m_text += L"<" + name;
        Attributes();
        if (Rarely()) {
            m_text += L"/>";
            return;
        }
        m_text += L">";
        if (depth > 0 && m_choices.Below(3) != 0) {
            for (unsigned count = m_choices.Below(5); count > 0; --count)
                Element(depth - 1);
        } else {
            m_text += std::wstring(m_choices.Below(20), Of(L"d\u3C3C\u013C&"));
        }
        if (Rarely())
            m_text += L"<!-- <c> -->";
        m_text += (Rarely() ? L"</ " : L"</") + name + (Rarely() ? L" >" : L">");
    }

    Choices& m_choices;
    std::wstring m_text;
};

bool IsSame(const QxXmlParser::ElemPos& a, const QxXmlParser::ElemPos& b) {
    return a.startTagOpen == b.startTagOpen && a.startTagClose == b.startTagClose &&
           a.endTagOpen == b.endTagOpen && a.endTagClose == b.endTagClose && a.scanPos == b.scanPos &&
           a.parent == b.parent && a.firstChild == b.firstChild && a.nextSibling == b.nextSibling;
}

/// Reads names in random order, some of them twice: the first read scans the start tag, later ones do not.
void CheckAttributes(QxXmlParser& parser, const ReferenceParse& reference, std::size_t element,
                     Choices& choices) {
    parser.SelectElement(static_cast<std::int32_t>(element));
    for (int read = 0; read < 12; ++read) {
        const std::wstring name = (choices.Below(2) == 0   ? L"Version"
                                   : choices.Below(2) == 0 ? L"a"
                                                           : L"b") +
                                  std::wstring(choices.Below(20) * choices.Below(2), L'n');
        QxString value = L"unchanged";
        std::wstring expected = L"unchanged";
        REQUIRE(parser.FindAttribute(name, value) == reference.Attribute(element, name, expected));
        REQUIRE(value.view() == expected);
    }
}

} // namespace

TEST_CASE("XmlParser_parses_and_reads_random_markup_like_the_plain_parser") {
    Choices choices(1);
    int parsed = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::wstring text = RandomMarkup(choices).Text();
        const ReferenceParse reference(text);
        QxXmlParser parser;
        const bool succeeded = parser.SetDocument(text);
        REQUIRE(succeeded == reference.Succeeded());
        REQUIRE(parser.GetError().view() == reference.Error());
        if (!succeeded)
            continue;
        ++parsed;
        REQUIRE(parser.PositionCount() == reference.Positions().size());
        for (std::size_t element = 1; element < parser.PositionCount(); ++element) {
            REQUIRE(IsSame(parser.Positions()[element], reference.Positions()[element]));
            CheckAttributes(parser, reference, element, choices);
            REQUIRE(parser.GetTagName() == reference.TagName(element));
            REQUIRE(parser.GetData().view() == reference.Data(element));
        }
    }
    CHECK(parsed > 2000);
}
