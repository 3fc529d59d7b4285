#include "common/xml/QxXmlParser.h"

#include <catch2/catch.hpp>

namespace {

struct Parsed : QxXmlParser {
    explicit Parsed(std::wstring_view text) { REQUIRE(SetDocument(text)); }
};

constexpr std::wstring_view Document = L"<r><a>1</a><n:b>2</n:b><a>3</a><c><d/><e><f/></e></c><g/></r>";

} // namespace

TEST_CASE("XmlParser_find_element_takes_the_first_top_level_element") {
    Parsed parser(Document);
    REQUIRE(parser.FindElement());
    CHECK(parser.GetTagName() == L"r");
    CHECK_FALSE(parser.FindElement());
    CHECK(parser.GetTagName() == L"r");
}

TEST_CASE("XmlParser_find_element_with_restart_starts_over") {
    Parsed parser(Document);
    REQUIRE(parser.FindElement(L"r"));
    CHECK_FALSE(parser.FindElement(L"r"));
    CHECK(parser.FindElement(L"r", true));
}

TEST_CASE("XmlParser_find_element_compares_names_exactly") {
    Parsed parser(L"<Name/>");
    CHECK_FALSE(parser.FindElement(L"name"));
    CHECK_FALSE(parser.FindElement(L"Nam"));
    CHECK_FALSE(parser.FindElement(L"Names"));
    CHECK(parser.FindElement(L"Name"));
}

TEST_CASE("XmlParser_names_are_compared_without_their_prefix") {
    Parsed parser(L"<x:r><x:y:a/><:b/><c:/></x:r>");
    CHECK_FALSE(parser.FindElement(L"x:r"));
    REQUIRE(parser.FindElement(L"r"));
    CHECK(parser.GetTagName() == L"x:r");
    CHECK_FALSE(parser.FindChildElement(L"a"));
    CHECK(parser.FindChildElement(L"y:a"));
    CHECK(parser.FindChildElement(L"b"));
    CHECK_FALSE(parser.FindChildElement(L"c"));
}

TEST_CASE("XmlParser_names_of_unusual_tags_are_the_first_token") {
    Parsed parser(L"<r>< a/><b x:c=\"1\"/><c=1/><=/></r>");
    for (const wchar_t* name : {L"a", L"b", L"c", L"="})
        CHECK(parser.FindChildElement(name));
    for (const wchar_t* name : {L" a", L"b x", L"c=", L"c=1", L"=/", L" "})
        CHECK_FALSE(parser.FindChildElement(name, true));
}

TEST_CASE("XmlParser_find_element_continues_among_siblings_inside_an_element") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement(L"a"));
    REQUIRE(parser.IntoElement());
    REQUIRE(parser.FindElement(L"a"));
    CHECK(parser.GetData() == L"3");
    CHECK_FALSE(parser.FindElement(L"b"));
    CHECK(parser.GetData() == L"3");
}

TEST_CASE("XmlParser_find_element_success_clears_the_current_child") {
    Parsed parser(L"<r><a><b/></a><c/></r>");
    REQUIRE(parser.FindChildElement(L"a"));
    REQUIRE(parser.IntoElement());
    REQUIRE(parser.FindChildElement());
    CHECK_FALSE(parser.FindElement(L"none"));
    CHECK(parser.GetChildTagName() == L"b");
    REQUIRE(parser.FindElement());
    CHECK(parser.GetChildTagName().empty());
}

TEST_CASE("XmlParser_find_child_selects_the_first_top_level_element_first") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement());
    CHECK(parser.GetTagName() == L"r");
    CHECK(parser.GetChildTagName() == L"a");
    QxXmlParser none;
    CHECK_FALSE(none.FindChildElement());
}

TEST_CASE("XmlParser_find_child_without_a_name_walks_all_children") {
    Parsed parser(Document);
    for (const wchar_t* name : {L"a", L"n:b", L"a", L"c", L"g"}) {
        REQUIRE(parser.FindChildElement());
        CHECK(parser.GetChildTagName() == name);
    }
    CHECK_FALSE(parser.FindChildElement());
    CHECK(parser.GetChildTagName() == L"g");
}

TEST_CASE("XmlParser_find_child_with_a_name_continues_after_the_current_child") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement(L"a"));
    CHECK(parser.GetChildData() == L"1");
    REQUIRE(parser.FindChildElement(L"a"));
    CHECK(parser.GetChildData() == L"3");
    CHECK_FALSE(parser.FindChildElement(L"a"));
    CHECK(parser.GetChildData() == L"3");
    CHECK_FALSE(parser.FindChildElement(L"b"));
    REQUIRE(parser.FindChildElement(L"b", true));
    CHECK(parser.GetChildData() == L"2");
}

TEST_CASE("XmlParser_failed_find_with_restart_remains_restarted") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement(L"c"));
    CHECK_FALSE(parser.FindChildElement(L"none", true));
    CHECK(parser.GetTagName() == L"r");
    CHECK(parser.GetChildTagName().empty());
    CHECK_FALSE(parser.FindElement(L"none", true));
    CHECK(parser.GetTagName().empty());
}

TEST_CASE("XmlParser_empty_element_has_no_children") {
    Parsed parser(L"<r/>");
    CHECK_FALSE(parser.FindChildElement());
    CHECK(parser.GetTagName() == L"r");
}

TEST_CASE("XmlParser_grandchildren_are_not_children") {
    Parsed parser(Document);
    CHECK_FALSE(parser.FindChildElement(L"d"));
    CHECK_FALSE(parser.FindChildElement(L"r"));
}

TEST_CASE("XmlParser_into_element_without_child_fails_and_changes_nothing") {
    Parsed parser(Document);
    CHECK_FALSE(parser.IntoElement());
    CHECK(parser.GetTagName().empty());
    REQUIRE(parser.FindElement());
    CHECK_FALSE(parser.IntoElement());
    CHECK(parser.GetTagName() == L"r");
}

TEST_CASE("XmlParser_into_element_makes_the_child_current") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement(L"c"));
    REQUIRE(parser.IntoElement());
    CHECK(parser.GetTagName() == L"c");
    CHECK(parser.GetChildTagName().empty());
    REQUIRE(parser.FindChildElement(L"e"));
    REQUIRE(parser.IntoElement());
    CHECK(parser.FindChildElement(L"f"));
}

TEST_CASE("XmlParser_out_of_element_makes_the_element_the_current_child") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement(L"c"));
    REQUIRE(parser.IntoElement());
    REQUIRE(parser.FindChildElement());
    REQUIRE(parser.OutOfElement());
    CHECK(parser.GetTagName() == L"r");
    CHECK(parser.GetChildTagName() == L"c");
    REQUIRE(parser.FindChildElement());
    CHECK(parser.GetChildTagName() == L"g");
}

TEST_CASE("XmlParser_out_of_element_at_the_top_has_no_effect") {
    Parsed parser(Document);
    CHECK_FALSE(parser.OutOfElement());
    REQUIRE(parser.FindChildElement(L"c"));
    CHECK_FALSE(parser.OutOfElement());
    CHECK(parser.GetTagName() == L"r");
    CHECK(parser.GetChildTagName() == L"c");
}

TEST_CASE("XmlParser_reset_clears_element_and_child") {
    Parsed parser(Document);
    REQUIRE(parser.FindChildElement());
    parser.ResetPosition();
    CHECK(parser.GetTagName().empty());
    CHECK(parser.GetChildTagName().empty());
    CHECK_FALSE(parser.IntoElement());
}
