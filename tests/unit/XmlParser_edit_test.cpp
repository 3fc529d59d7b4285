#include "Allocations.h"
#include "TestData.h"
#include "XmlDump.h"

#include "common/xml/QxXmlParser.h"

#include <catch2/catch.hpp>

#include <string>

namespace {

/// Checks the document and that a fresh parse of it gives the same positions.
void CheckDocument(const QxXmlParser& parser, std::wstring_view expected) {
    CHECK(parser.GetDocument() == expected);
    QxXmlParser again;
    REQUIRE(again.SetDocument(parser.GetDocument()));
    CHECK(DumpFirstElement(parser) == DumpElements(again));
}

struct Parsed : QxXmlParser {
    explicit Parsed(std::wstring_view text) {
        REQUIRE(SetDocument(text));
        REQUIRE(FindElement());
    }
};

} // namespace

TEST_CASE("XmlParser_add_element_starts_a_document") {
    QxXmlParser parser;
    parser.AddElement(L"r");
    CheckDocument(parser, L"<r/>");
    CHECK(parser.GetTagName() == L"r");
    QxXmlParser withData;
    withData.AddElement(L"r", L"a<b");
    CheckDocument(withData, L"<r>a&lt;b</r>");
}

TEST_CASE("XmlParser_add_element_inserts_after_the_current_element") {
    Parsed parser(L"<r><a/><c/></r>");
    REQUIRE(parser.FindChildElement(L"a"));
    REQUIRE(parser.IntoElement());
    parser.AddElement(L"b", L"1");
    CHECK(parser.GetTagName() == L"b");
    CHECK(parser.GetChildTagName().empty());
    CheckDocument(parser, L"<r><a/><b>1</b><c/></r>");
    CHECK(parser.FindElement(L"c"));
}

TEST_CASE("XmlParser_add_element_at_the_top_inserts_after_the_white_space") {
    Parsed parser(L"<r/>\n<!-- x -->");
    parser.AddElement(L"s");
    CheckDocument(parser, L"<r/>\n<s/><!-- x -->");
    parser.ResetPosition();
    REQUIRE(parser.FindElement(L"s"));
}

TEST_CASE("XmlParser_add_element_without_current_element_becomes_the_first") {
    Parsed parser(L"<?xml?><r><a/></r>");
    parser.ResetPosition();
    parser.AddElement(L"s");
    CheckDocument(parser, L"<?xml?><s/><r><a/></r>");
    REQUIRE(parser.FindElement(L"r"));
    REQUIRE(parser.FindChildElement(L"a"));
    CHECK(parser.GetChildSubDocument() == L"<a/>");
}

TEST_CASE("XmlParser_add_element_after_a_failed_parse_inserts_at_the_start") {
    QxXmlParser parser;
    REQUIRE_FALSE(parser.SetDocument(L"text"));
    parser.AddElement(L"r");
    CheckDocument(parser, L"<r/>text");
}

TEST_CASE("XmlParser_add_child_without_current_element_fails") {
    QxXmlParser parser;
    CHECK_FALSE(parser.AddChildElement(L"a"));
    CHECK(parser.GetDocument().empty());
}

TEST_CASE("XmlParser_add_child_rewrites_an_empty_element") {
    Parsed parser(L"<n:r a=\"1\" />\n");
    REQUIRE(parser.AddChildElement(L"a"));
    CHECK(parser.GetChildTagName() == L"a");
    CheckDocument(parser, L"<n:r a=\"1\" ><a/></n:r>\n");
}

TEST_CASE("XmlParser_add_child_rewrites_an_empty_element_with_two_slashes") {
    Parsed parser(L"<r b//>");
    REQUIRE(parser.AddChildElement(L"a"));
    CheckDocument(parser, L"<r b/ ><a/></r>");
}

TEST_CASE("XmlParser_add_child_inserts_before_the_end_tag_of_a_parent_without_children") {
    Parsed parser(L"<r>x<!-- c --></r >");
    REQUIRE(parser.AddChildElement(L"a", L"1"));
    CheckDocument(parser, L"<r>x<!-- c --><a>1</a></r >");
}

TEST_CASE("XmlParser_add_child_without_current_child_becomes_the_first") {
    Parsed parser(L"<r> <b/></r>");
    REQUIRE(parser.AddChildElement(L"a"));
    CheckDocument(parser, L"<r> <a/><b/></r>");
    CHECK(parser.FindChildElement(L"b"));
}

TEST_CASE("XmlParser_add_child_inserts_after_the_current_child") {
    Parsed parser(L"<r><a/> x <!-- c --><b><c/></b></r>");
    REQUIRE(parser.FindChildElement(L"a"));
    REQUIRE(parser.AddChildElement(L"n", L"1"));
    REQUIRE(parser.AddChildElement(L"m"));
    CheckDocument(parser, L"<r><a/> x <n>1</n><m/><!-- c --><b><c/></b></r>");
}

TEST_CASE("XmlParser_set_data_replaces_the_content") {
    Parsed parser(L"<r><a>1</a><b/></r>");
    CHECK(parser.FindChildElement(L"a"));
    REQUIRE(parser.SetChildData(L"x & y"));
    CHECK(parser.GetChildData() == L"x & y");
    CheckDocument(parser, L"<r><a>x &amp; y</a><b/></r>");
    REQUIRE(parser.SetChildData(L""));
    CheckDocument(parser, L"<r><a></a><b/></r>");
}

TEST_CASE("XmlParser_set_data_of_an_empty_element_gives_it_an_end_tag") {
    Parsed parser(L"<r><a b=\"1\"/><c/></r>");
    REQUIRE(parser.FindChildElement(L"a"));
    REQUIRE(parser.SetChildData(L""));
    CheckDocument(parser, L"<r><a b=\"1\"/><c/></r>");
    REQUIRE(parser.SetChildData(L"<"));
    CheckDocument(parser, L"<r><a b=\"1\">&lt;</a><c/></r>");
}

TEST_CASE("XmlParser_set_data_drops_the_children") {
    Parsed parser(L"<r>x<a><b/></a>y</r> ");
    REQUIRE(parser.FindChildElement(L"a"));
    REQUIRE(parser.SetData(L"1"));
    CHECK(parser.GetChildTagName().empty());
    CHECK_FALSE(parser.FindChildElement());
    CHECK(parser.GetData() == L"1");
    CheckDocument(parser, L"<r>1</r> ");
}

TEST_CASE("XmlParser_set_attribute_replaces_the_value") {
    Parsed parser(L"<r a=\"1\" n:b = \"\"><c/></r>");
    REQUIRE(parser.SetAttribute(L"a", L"x'y"));
    REQUIRE(parser.SetAttribute(L"b", L">"));
    CheckDocument(parser, L"<r a=\"x&apos;y\" n:b = \"&gt;\"><c/></r>");
    CHECK(parser.GetAttribute(L"a") == L"x'y");
    REQUIRE(parser.SetAttribute(L"a", L""));
    CheckDocument(parser, L"<r a=\"\" n:b = \"&gt;\"><c/></r>");
}

TEST_CASE("XmlParser_set_attribute_adds_after_the_others") {
    Parsed parser(L"<r a=\"1\"><c/><d /></r>");
    REQUIRE(parser.SetAttribute(L"b", L"2"));
    REQUIRE(parser.FindChildElement(L"c"));
    REQUIRE(parser.SetChildAttribute(L"e", L"3"));
    REQUIRE(parser.FindChildElement(L"d"));
    REQUIRE(parser.SetChildAttribute(L"f", L"4"));
    CheckDocument(parser, L"<r a=\"1\" b=\"2\"><c e=\"3\"/><d  f=\"4\"/></r>");
}

TEST_CASE("XmlParser_set_attribute_refuses_a_start_tag_that_ends_inside_quotes") {
    const wchar_t* const text = GENERATE(L"<r a=\"x>y\"></r>", L"<r a=\"x/>y\"", L"<r a=\"x></r>",
                                         L"<r \">\" a=\"1\"></r>", L"<></>>");
    Parsed parser(text);
    CHECK_FALSE(parser.SetAttribute(L"a", L"1"));
    CHECK_FALSE(parser.SetAttribute(L"b", L"1"));
    CheckDocument(parser, text);
}

TEST_CASE("XmlParser_setters_without_an_element_fail") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r/>"));
    CHECK_FALSE(parser.SetData(L"1"));
    CHECK_FALSE(parser.SetChildData(L"1"));
    CHECK_FALSE(parser.SetAttribute(L"a", L"1"));
    CHECK_FALSE(parser.SetChildAttribute(L"a", L"1"));
    CHECK(parser.GetDocument() == L"<r/>");
}

TEST_CASE("XmlParser_edits_accept_parts_of_the_document_itself") {
    Parsed parser(L"<root a=\"1\"/>");
    REQUIRE(parser.AddChildElement(parser.GetTagName(), parser.GetDocument()));
    REQUIRE(parser.SetAttribute(parser.GetChildTagName(), parser.GetChildSubDocument()));
    REQUIRE(parser.SetChildData(parser.GetChildTagName()));
    CheckDocument(parser,
                  L"<root a=\"1\" root=\"&lt;root&gt;&amp;lt;root a=&quot;1&quot;/&amp;gt;&lt;/root&gt;\">"
                  L"<root>root</root></root>");
}

namespace {

/// Does one random edit or move.
void Step(QxXmlParser& parser, Choices& choices) {
    static constexpr std::wstring_view Names[] = {L"a", L"bc", L"n:def", L"ghijklmnop"};
    static constexpr std::wstring_view Texts[] = {L"", L"x", L"<&>'\"", L"some longer text, to move much"};
    const std::wstring_view name = Names[choices.Below(4)];
    const std::wstring_view text = Texts[choices.Below(4)];
    switch (choices.Below(16)) {
    case 0:
    case 1:
    case 2:
    case 3:
        parser.AddChildElement(name, text);
        break;
    case 4:
    case 5:
        parser.AddElement(name, text);
        break;
    case 6:
        parser.SetChildData(text);
        break;
    case 7:
        if (choices.Below(8) == 0)
            parser.SetData(text);
        break;
    case 8:
        parser.SetAttribute(name, text);
        break;
    case 9:
    case 10:
        parser.SetChildAttribute(name, text);
        break;
    case 11:
        parser.FindChildElement({}, choices.Below(2) == 0);
        break;
    case 12:
        parser.FindElement();
        break;
    case 13:
        parser.IntoElement();
        break;
    case 14:
        parser.OutOfElement();
        break;
    default:
        if (choices.Below(8) == 0)
            parser.ResetPosition();
        break;
    }
}

} // namespace

TEST_CASE("XmlParser_random_edits_keep_the_positions_of_a_fresh_parse") {
    const wchar_t* const start = GENERATE(
        L"", L"<r/>",
        L"<?xml version=\"1.0\"?>\n<r a=\"1\">\n <b>1</b>\n <!-- <c> -->\n <c><d/> x </c>\n</r>\n<!-- e -->",
        L"<r><a><![CDATA[<b>]]></a >t< b >1</b><c d='1' e=2 /></r>", L"no element");
    const unsigned seed = GENERATE(range(1u, 13u));
    Choices choices(seed);
    QxXmlParser parser;
    parser.SetDocument(start);
    for (int step = 0; step < 250; ++step) {
        Step(parser, choices);
        QxXmlParser again;
        const bool parsed = again.SetDocument(parser.GetDocument());
        INFO("seed " << seed << " step " << step);
        REQUIRE(parsed == (parser.Positions() != nullptr && parser.Positions()[0].firstChild != 0));
        REQUIRE(DumpFirstElement(parser) == DumpElements(again));
    }
    CHECK(parser.PositionCount() > 10);
}

TEST_CASE("XmlParser_parse_out_of_memory_leaves_a_usable_parser") {
    const std::wstring text = ReadTestData("print_job_full.xml");
    for (const std::wstring& document : {text, text.substr(0, text.size() - 1)}) {
        bool failing = true;
        for (unsigned allowed = 0; failing; ++allowed) {
            QxXmlParser parser;
            parser.SetDocument(L"<old/>");
            {
                const Allocations::FailOnce failure(allowed);
                try {
                    parser.SetDocument(document);
                } catch (const std::bad_alloc&) {
                }
                failing = failure.Happened();
            }
            if (failing) {
                REQUIRE(parser.PositionCount() == 1);
                REQUIRE(parser.Positions()[0].firstChild == 0);
                REQUIRE_FALSE(parser.FindElement());
            }
            REQUIRE(parser.SetDocument(text));
            REQUIRE(parser.FindElement(L"PrintJob"));
            REQUIRE(allowed < 100);
        }
    }
}

TEST_CASE("XmlParser_edit_out_of_memory_keeps_every_position") {
    const std::wstring longText(1000, L'x');
    const int edit = GENERATE(range(0, 5));
    bool failing = true;
    for (unsigned allowed = 0; failing; ++allowed) {
        Parsed parser(L"<r><a><b/></a><c/></r>");
        REQUIRE(parser.FindChildElement(L"c"));
        {
            const Allocations::FailOnce failure(allowed);
            try {
                switch (edit) {
                case 0:
                    parser.AddElement(longText, longText);
                    break;
                case 1:
                    parser.AddChildElement(L"d", longText);
                    break;
                case 2:
                    parser.IntoElement();
                    parser.AddChildElement(L"d", longText);
                    break;
                case 3:
                    parser.SetChildData(longText);
                    break;
                default:
                    parser.SetAttribute(longText, longText);
                    break;
                }
            } catch (const std::bad_alloc&) {
            }
            failing = failure.Happened();
        }
        QxXmlParser again;
        REQUIRE(again.SetDocument(parser.GetDocument()));
        REQUIRE(DumpFirstElement(parser) == DumpElements(again));
        REQUIRE(allowed < 100);
    }
}
