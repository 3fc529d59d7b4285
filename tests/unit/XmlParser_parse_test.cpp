#include "TestData.h"
#include "XmlDump.h"

#include "common/xml/QxXmlParser.h"

#include <catch2/catch.hpp>

#include <initializer_list>
#include <string>

namespace {

using ElemPos = QxXmlParser::ElemPos;

/// Parses a text that must fail and returns the error text.
std::wstring ErrorOf(std::wstring_view text) {
    QxXmlParser parser;
    REQUIRE_FALSE(parser.SetDocument(text));
    CHECK(parser.PositionCount() == 1);
    CHECK(parser.Positions()[0].firstChild == 0);
    CHECK_FALSE(parser.FindElement());
    return std::wstring(parser.GetError().view());
}

void CheckPosition(const QxXmlParser& parser, std::size_t index,
                   std::initializer_list<std::int32_t> expected) {
    REQUIRE(index < parser.PositionCount());
    const ElemPos& at = parser.Positions()[index];
    const std::vector<std::int32_t> found{at.startTagOpen, at.startTagClose, at.endTagOpen, at.endTagClose,
                                          at.scanPos,      at.parent,        at.firstChild, at.nextSibling};
    INFO("entry " << index);
    CHECK(found == std::vector<std::int32_t>(expected));
}

/// Parses a text that must be one element and returns its tag name.
std::wstring TagNameOf(std::wstring_view text) {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    REQUIRE(parser.FindElement());
    return std::wstring(parser.GetTagName());
}

} // namespace

TEST_CASE("XmlParser_entry_is_eight_32_bit_fields") {
    CHECK(sizeof(ElemPos) == 32);
}

TEST_CASE("XmlParser_new_parser_has_no_element") {
    QxXmlParser parser;
    CHECK(parser.GetDocument().empty());
    CHECK(parser.GetError().empty());
    CHECK_FALSE(parser.FindElement());
    CHECK_FALSE(parser.FindChildElement());
}

TEST_CASE("XmlParser_empty_element_ends_at_its_slash") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a/>"));
    CHECK(parser.PositionCount() == 2);
    CheckPosition(parser, 1, {0, 3, 2, 3, 4, 0, 0, 0});
}

TEST_CASE("XmlParser_nested_elements_have_offsets_and_links") {
    QxXmlParser parser;
    //                            0123456789012345678901234567890
    REQUIRE(parser.SetDocument(L" <r>\n<a>x</a> <b c=\"1\" /></r >y<"));
    REQUIRE(parser.PositionCount() == 4);
    CheckPosition(parser, 0, {0, 0, 1, 0, 0, 0, 1, 0});
    CheckPosition(parser, 1, {1, 3, 25, 29, 31, 0, 2, 0});
    CheckPosition(parser, 2, {5, 7, 9, 12, 14, 1, 0, 3});
    CheckPosition(parser, 3, {14, 24, 23, 24, 25, 1, 0, 0});
}

TEST_CASE("XmlParser_other_markup_is_skipped_before_and_between_elements") {
    const wchar_t* const skipped =
        GENERATE(L"<?xml version=\"1.0\"?>", L"<!-- x -->", L"<!DOCTYPE r>", L"<![CDATA[<b></c>]]>",
                 L"<!-- <b/> -- > -->", L"<!-->", L"<!-x-->", L"<?>", L"< ?pi x?>", L"<!>", L"text", L"\"'");
    const std::wstring text(skipped);
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text + L"<r>" + text + L"<a/>" + text + L"<c></c>" + text + L"</r>"));
    CHECK(FindBrokenPosition(parser) == nullptr);
    CHECK(parser.PositionCount() == 4);
    REQUIRE(parser.FindElement());
    CHECK(parser.GetTagName() == L"r");
    REQUIRE(parser.FindChildElement());
    CHECK(parser.GetChildTagName() == L"a");
    REQUIRE(parser.FindChildElement());
    CHECK(parser.GetChildTagName() == L"c");
    CHECK_FALSE(parser.FindChildElement());
}

TEST_CASE("XmlParser_skipped_markup_without_its_end_fails") {
    const wchar_t* const text = GENERATE(L"<?xml ><r/>", L"<!-- x -><r/>", L"<![CDATA[ ]>]] ><r/>",
                                         L"<!DOCTYPE r", L"<!", L"<?", L"<!--", L"<r><!-- </r>");
    CHECK(ErrorOf(text) == L"End of tag not found");
}

TEST_CASE("XmlParser_only_the_first_top_level_element_is_parsed") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a/><b/>"));
    CHECK(parser.PositionCount() == 2);
    CHECK(parser.FindElement());
    CHECK_FALSE(parser.FindElement(L"b"));
    CHECK_FALSE(parser.FindElement());
}

TEST_CASE("XmlParser_errors_after_the_first_element_are_ignored") {
    const wchar_t* const rest = GENERATE(L"<", L"</b>", L"<b", L"<!-- ", L"x", L"<\"");
    QxXmlParser parser;
    CHECK(parser.SetDocument(L"<a></a>" + std::wstring(rest)));
    CHECK(parser.GetError().empty());
}

TEST_CASE("XmlParser_empty_text_returns_false_and_only_entry_0") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a/>"));
    CHECK_FALSE(parser.SetDocument({}));
    CHECK(parser.PositionCount() == 1);
    CheckPosition(parser, 0, {0, 0, 0, 0, 0, 0, 0, 0});
    CHECK(parser.GetDocument().empty());
    CHECK(parser.GetError().empty());
}

TEST_CASE("XmlParser_text_without_element_is_an_error") {
    CHECK(ErrorOf(GENERATE(L"x", L" ", L"<!-- x -->", L"<?xml?> ")) == L"Element tag not found");
}

TEST_CASE("XmlParser_text_ending_in_a_tag_is_an_error") {
    CHECK(ErrorOf(GENERATE(L"<", L"<  \n", L"<a><", L"<a> < ")) == L"Abrupt end within tag");
}

TEST_CASE("XmlParser_tag_starting_with_a_quote_is_an_error") {
    CHECK(ErrorOf(GENERATE(L"<\"a\">", L"< \"", L"<a><\"b\"/></a>")) == L"Tag starts with quote");
}

TEST_CASE("XmlParser_tag_without_its_end_is_an_error") {
    CHECK(ErrorOf(GENERATE(L"<a", L"<a ", L"<a b=\"1\"", L"<a><b", L"<a/")) == L"End of tag not found");
}

TEST_CASE("XmlParser_missing_end_tag_is_an_error") {
    CHECK(ErrorOf(L"<a>x") == L"End tag of a element not found");
    CHECK(ErrorOf(L"<a>") == L"End tag of a element not found");
    CHECK(ErrorOf(L"<a><b/> ") == L"End tag of a element not found");
    CHECK(ErrorOf(L"<a><b></b>") == L"End tag of a element not found");
    CHECK(ErrorOf(L"<a><n:b c='1'>") == L"End tag of n:b element not found");
    CHECK(ErrorOf(L"<a><!-- </a> -->") == L"End tag of a element not found");
}

TEST_CASE("XmlParser_end_tag_of_another_name_is_an_error") {
    CHECK(ErrorOf(L"<a>x</b>") == L"End tag does not correspond to a");
    CHECK(ErrorOf(L"<A></a>") == L"End tag does not correspond to A");
    CHECK(ErrorOf(L"<a></b") == L"End tag does not correspond to a");
    CHECK(ErrorOf(L"<ab></a>") == L"End tag does not correspond to ab");
    CHECK(ErrorOf(L"<a></ab>") == L"End tag does not correspond to a");
    CHECK(ErrorOf(L"<a></>") == L"End tag does not correspond to a");
    CHECK(ErrorOf(L"<x:a></a>") == L"End tag does not correspond to x:a");
    CHECK(ErrorOf(L"<a b></a b c=\"></b>") == L"End tag not completed for element a");
    CHECK(ErrorOf(L"<a><b></a></b>") == L"End tag does not correspond to b");
}

TEST_CASE("XmlParser_incomplete_end_tag_is_an_error") {
    const wchar_t* const end = GENERATE(L"</a", L"</", L"</a ", L"< / a", L"</a b", L"</a \">", L"</\"a\"");
    CHECK(ErrorOf(L"<a>" + std::wstring(end)) == L"End tag not completed for element a");
}

TEST_CASE("XmlParser_end_tag_may_contain_white_space_and_more_tokens") {
    const wchar_t* const end =
        GENERATE(L"</a >", L"</ a>", L"< /a>", L"<\t/\r\na\n>", L"</a b>", L"</a \">\">", L"</\"x\"a>");
    const std::wstring text = L"<r><a>" + std::wstring(end) + L"</r>";
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    CHECK(FindBrokenPosition(parser) == nullptr);
    CHECK(parser.Positions()[2].endTagOpen == 6);
    CHECK(parser.Positions()[2].endTagClose == static_cast<std::int32_t>(text.size()) - 5);
}

TEST_CASE("XmlParser_end_tag_at_the_top_returns_false_without_error") {
    CHECK(ErrorOf(L"</a>").empty());
    CHECK(ErrorOf(L" < /").empty());
}

TEST_CASE("XmlParser_start_tag_ends_at_its_first_bracket_even_in_quotes") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a b=\"x>y\"></a>"));
    CheckPosition(parser, 1, {0, 7, 11, 14, 15, 0, 0, 0});
    REQUIRE(parser.SetDocument(L"<a b=\"x/>y\">"));
    CheckPosition(parser, 1, {0, 8, 7, 8, 12, 0, 0, 0});
}

TEST_CASE("XmlParser_tag_name_is_the_first_token_of_the_tag") {
    CHECK(TagNameOf(L"<name/>") == L"name");
    CHECK(TagNameOf(L"<\tname\n/>") == L"name");
    CHECK(TagNameOf(L"<n:name a=\"1\"/>") == L"n:name");
    CHECK(TagNameOf(L"<name=1/>") == L"name");
    CHECK(TagNameOf(L"<na\"me/>") == L"na\"me");
    CHECK(TagNameOf(L"<></>>") == L">");
    CHECK(TagNameOf(L"<=></=>") == L"=");
    CHECK(TagNameOf(L"<<a></<>") == L"<");
}

TEST_CASE("XmlParser_success_keeps_the_last_error") {
    QxXmlParser parser;
    CHECK_FALSE(parser.SetDocument(L"<a>"));
    CHECK(parser.SetDocument(L"<a/>"));
    CHECK(parser.GetError() == L"End tag of a element not found");
    CHECK_FALSE(parser.SetDocument(L"</a>"));
    CHECK(parser.GetError() == L"End tag of a element not found");
    CHECK_FALSE(parser.SetDocument(L"<"));
    CHECK(parser.GetError() == L"Abrupt end within tag");
}

TEST_CASE("XmlParser_error_offset_is_that_of_the_tag_at_fault_or_the_end_of_the_text") {
    const auto offsetOf = [](std::wstring_view text) {
        QxXmlParser parser;
        REQUIRE_FALSE(parser.SetDocument(text));
        return parser.GetErrorOffset();
    };
    CHECK(offsetOf(L"abc") == 3);
    CHECK(offsetOf(L" <") == 1);
    CHECK(offsetOf(L" <\"a\">") == 1);
    CHECK(offsetOf(L" <a") == 1);
    CHECK(offsetOf(L"<a> <!-- </a>") == 4);
    CHECK(offsetOf(L"<a><b>text</b>") == 0);
    CHECK(offsetOf(L"<a><b>text</a>") == 10);
    CHECK(offsetOf(L"<a>text</a") == 7);
}

TEST_CASE("XmlParser_selected_element_is_read_like_the_current_one") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a><b>first</b><c>second</c></a>"));
    REQUIRE(parser.FindChildElement(L"b"));
    parser.SelectElement(3);
    CHECK(parser.GetTagName() == L"c");
    CHECK(parser.GetData() == L"second");
    CHECK(parser.GetChildTagName().empty());
}

TEST_CASE("XmlParser_failure_keeps_the_text_and_discards_the_elements") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a><b/></a>"));
    REQUIRE(parser.FindChildElement());
    REQUIRE_FALSE(parser.SetDocument(L"<a><b/><c></a>"));
    CHECK(parser.GetDocument() == L"<a><b/><c></a>");
    CHECK(parser.PositionCount() == 1);
    CheckPosition(parser, 0, {0, 0, 0, 0, 0, 0, 0, 0});
    CHECK(parser.GetTagName().empty());
    CHECK(parser.GetChildTagName().empty());
    CHECK(parser.GetSubDocument().empty());
    CHECK(parser.GetData().empty());
}

TEST_CASE("XmlParser_setting_a_document_resets_the_position") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a><b/></a>"));
    REQUIRE(parser.FindChildElement());
    REQUIRE(parser.SetDocument(L"<c/>"));
    CHECK(parser.GetTagName().empty());
    CHECK(parser.GetChildTagName().empty());
    REQUIRE(parser.FindElement());
    CHECK(parser.GetTagName() == L"c");
}

TEST_CASE("XmlParser_document_may_be_part_of_the_old_one") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<a><b>1</b><c>2</c></a>"));
    REQUIRE(parser.FindChildElement(L"c"));
    REQUIRE(parser.SetDocument(parser.GetChildSubDocument()));
    CHECK(parser.GetDocument() == L"<c>2</c>");
    CHECK(parser.FindElement(L"c"));
}

TEST_CASE("XmlParser_embedded_nul_is_a_character_like_any_other") {
    const std::wstring text(L"<a>x\0y<b\0/></a>", 15);
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    CHECK(parser.GetDocument() == text);
    CHECK(parser.PositionCount() == 3);
    REQUIRE(parser.FindElement());
    CHECK(parser.FindChildElement(std::wstring_view(L"b\0", 2)));
}

TEST_CASE("XmlParser_complete_print_job_parses_with_all_elements") {
    const std::wstring text = ReadTestData("print_job_full.xml");
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    CHECK(FindBrokenPosition(parser) == nullptr);
    CHECK(parser.PositionCount() == 1 + 110);
    REQUIRE(parser.FindElement(L"PrintJob"));
    for (const wchar_t* name : {L"JobGuid", L"LogTarget", L"Toner", L"JobContents", L"PageCounterInfo",
                                L"WindowsPrintInfo", L"PolicyResults"})
        CHECK(parser.FindChildElement(name));
}

TEST_CASE("XmlParser_every_prefix_of_a_print_job_fails_cleanly") {
    const std::wstring text = ReadTestData("print_job_full.xml");
    QxXmlParser parser;
    for (std::size_t length = 0; length < text.size(); ++length) {
        // A copy, so that a memory checker sees any read past its end.
        const std::wstring prefix = text.substr(0, length);
        INFO(length);
        REQUIRE_FALSE(parser.SetDocument(prefix));
        REQUIRE(parser.PositionCount() == 1);
        REQUIRE((length == 0 || !parser.GetError().empty()));
    }
    CHECK(parser.SetDocument(text));
}

TEST_CASE("XmlParser_print_job_with_any_character_changed_has_valid_positions") {
    const std::wstring text = ReadTestData("print_job_full.xml");
    QxXmlParser parser;
    int parsed = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const wchar_t other : {L'<', L'>', L'/', L'"', L'!', L' '}) {
            std::wstring changed = text;
            changed[at] = other;
            if (!parser.SetDocument(changed))
                continue;
            ++parsed;
            INFO(at << " " << static_cast<char>(other));
            REQUIRE(FindBrokenPosition(parser) == nullptr);
        }
    }
    CHECK(parsed > 0);
}
