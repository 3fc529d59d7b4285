#include "common/xml/QxXmlParser.h"

#include <catch2/catch.hpp>

#include <string>

namespace {

std::wstring DataOf(std::wstring_view text) {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    REQUIRE(parser.FindElement());
    return std::wstring(parser.GetData().view());
}

/// The attribute "id" of a start tag with this content; "(none)" if not found.
std::wstring IdOf(const std::wstring& inside) {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r " + inside + L"></r>"));
    REQUIRE(parser.FindElement());
    QxString value(L"(none)");
    const bool found = parser.FindAttribute(L"id", value);
    CHECK(found == (value != L"(none)"));
    CHECK(parser.GetAttribute(L"id") == (found ? value : QxString()));
    return std::wstring(value.view());
}

std::wstring SubDocumentOf(const std::wstring& text) {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(text));
    REQUIRE(parser.FindElement());
    return std::wstring(parser.GetSubDocument());
}

} // namespace

TEST_CASE("XmlParser_data_is_the_unescaped_text") {
    CHECK(DataOf(L"<a>x</a>") == L"x");
    CHECK(DataOf(L"<a> x\r\n</a>") == L" x\r\n");
    CHECK(DataOf(L"<a></a>").empty());
    CHECK(DataOf(L"<a>&lt;&#65;&gt;</a>") == L"<&#65;>");
    CHECK(DataOf(L"<a>&amp;lt; &quot;&apos;</a>") == L"&lt; \"'");
    CHECK(DataOf(L"<a>x > y</a>") == L"x > y");
    CHECK(DataOf(L"<a>x<!-- c -->y</a>") == L"x<!-- c -->y");
}

TEST_CASE("XmlParser_data_of_empty_elements_and_of_parents_is_empty") {
    CHECK(DataOf(L"<a/>").empty());
    CHECK(DataOf(L"<a>x<b/>y</a>").empty());
    QxXmlParser parser;
    CHECK(parser.GetData().empty());
    CHECK(parser.GetChildData().empty());
}

TEST_CASE("XmlParser_data_of_a_cdata_section_is_raw") {
    CHECK(DataOf(L"<a><![CDATA[<b>&amp;]]></a>") == L"<b>&amp;");
    CHECK(DataOf(L"<a> \t\r\n<![CDATA[x]]> </a>") == L"x");
    CHECK(DataOf(L"<a><![CDATA[]]></a>").empty());
    CHECK(DataOf(L"<a><![CDATA[]]]]></a>") == L"]]");
    CHECK(DataOf(L"<a><![CDATA[x]]>&amp;y</a>") == L"x");
    CHECK(DataOf(L"<a><![CDATA[x]>]]></a>") == L"x]>");
}

TEST_CASE("XmlParser_data_of_a_cdata_section_in_double_quotes_is_found") {
    CHECK(DataOf(L"<a>\"<![CDATA[A4]]>\"</a>") == L"A4");
    CHECK(DataOf(L"<a> \r\n\"<![CDATA[<b>&amp;]]>\"</a>") == L"<b>&amp;");
    CHECK(DataOf(L"<a>\"<![CDATA[A4]]> tail\" more</a>") == L"A4");
    CHECK(DataOf(L"<a>\"<![CDATA[A\"4]]>\"</a>") == L"A\"4"); // the start of the token decides
    CHECK(DataOf(L"<a>\"<![CDATA[A4]]></a>") == L"A4");       // unterminated quote
    CHECK(DataOf(L"<a>\"<![CDATA[]]></a>").empty());
    CHECK(DataOf(L"<a>\"<![CDATA[1]]></a>") == L"1");
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r><n>\"<![CDATA[42]]>\"</n><f>\"<![CDATA[true]]>\"</f></r>"));
    REQUIRE(parser.FindChildElement(L"n"));
    CHECK(parser.GetChildNumber() == 42);
    REQUIRE(parser.FindChildElement(L"f"));
    CHECK(parser.GetChildFlag());
}

TEST_CASE("XmlParser_data_with_quotes_not_before_a_cdata_section_is_text") {
    CHECK(DataOf(L"<a>\"A4\"</a>") == L"\"A4\"");
    CHECK(DataOf(L"<a>\"</a>") == L"\"");
    CHECK(DataOf(L"<a>\"\"</a>") == L"\"\"");
    CHECK(DataOf(L"<a>'<![CDATA[&amp;]]>'</a>") == L"'<![CDATA[&]]>'");
    CHECK(DataOf(L"<a>\"\"<![CDATA[&amp;]]></a>") == L"\"\"<![CDATA[&]]>"); // an empty token comes first
    CHECK(DataOf(L"<a>\" <![CDATA[&amp;]]>\"</a>") == L"\" <![CDATA[&]]>\"");
    CHECK(DataOf(L"<a>\"<![CD\"ATA[&amp;]]></a>") == L"\"<![CD\"ATA[&]]>");
    CHECK(DataOf(L"<a>&quot;<![CDATA[&amp;]]>&quot;</a>") == L"\"<![CDATA[&]]>\"");
}

TEST_CASE("XmlParser_data_other_than_a_cdata_section_is_unescaped_text") {
    CHECK(DataOf(L"<a>x<![CDATA[&amp;]]></a>") == L"x<![CDATA[&]]>");
    CHECK(DataOf(L"<a><![CDAT[&amp;]]></a>") == L"<![CDAT[&]]>");
    CHECK(DataOf(L"<a>< ![CDATA[&amp;]]></a>") == L"< ![CDATA[&]]>");
    CHECK(DataOf(L"<a><![CDATA]]>&amp;.</a>") == L"<![CDATA]]>&.");
}

TEST_CASE("XmlParser_attribute_is_found_in_double_quotes") {
    CHECK(IdOf(L"id=\"5\"") == L"5");
    CHECK(IdOf(L"id = \"5\"") == L"5");
    CHECK(IdOf(L"\tid\r\n=\n\"5\"") == L"5");
    CHECK(IdOf(L"x=\"1\"id=\"5\"y=\"2\"") == L"5");
    CHECK(IdOf(L"id=\"\"").empty());
    CHECK(IdOf(L"id=\"a b/c='d'\"") == L"a b/c='d'");
    CHECK(IdOf(L"id=\"&lt;&quot;&apos;&#65;\"") == L"<\"'&#65;");
}

TEST_CASE("XmlParser_attribute_is_compared_without_its_prefix") {
    CHECK(IdOf(L"x:id=\"5\" n=7") == L"5");
    CHECK(IdOf(L"x:y:id=\"5\"") == L"(none)");
    CHECK(IdOf(L"ID=\"5\"") == L"(none)");
    CHECK(IdOf(L"id2=\"5\" 2id=\"6\"") == L"(none)");
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r x:id=\"5\" y:z:id=\"6\"/>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetAttribute(L"x:id").empty());
    CHECK(parser.GetAttribute(L"z:id") == L"6");
}

TEST_CASE("XmlParser_attribute_without_a_name_is_found_behind_a_prefix") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r =\"5\" x:=\"6\"/>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetAttribute(L"") == L"6");
}

TEST_CASE("XmlParser_attribute_that_looks_like_a_name_inside_quotes_is_not_found") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r \"id=\"5\"/>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetAttribute(L"\"id").empty());
}

TEST_CASE("XmlParser_attribute_without_double_quotes_is_not_found") {
    CHECK(IdOf(L"id=7") == L"(none)");
    CHECK(IdOf(L"id='7'") == L"(none)");
    CHECK(IdOf(L"id") == L"(none)");
    CHECK(IdOf(L"id=") == L"(none)");
    CHECK(IdOf(L"id=/ \"7\"") == L"(none)");
    CHECK(IdOf(L"id \"7\"") == L"(none)");
    CHECK(IdOf(L"id = x \"7\"") == L"(none)");
}

TEST_CASE("XmlParser_attribute_search_ends_at_slash_and_bracket") {
    CHECK(IdOf(L"n=7/8 id=\"5\"") == L"(none)");
    CHECK(IdOf(L"n=\"/\" id=\"5\"") == L"5");
    CHECK(IdOf(L"> id=\"5\"") == L"(none)");
    CHECK(IdOf(L"n=\"a>b\" id=\"5\"") == L"5");
}

TEST_CASE("XmlParser_first_of_duplicate_attributes_is_found") {
    CHECK(IdOf(L"id=\"1\" id=\"2\"") == L"1");
    CHECK(IdOf(L"id=1 id=\"2\"") == L"(none)");
    CHECK(IdOf(L"n=\"id\" id=\"2\"") == L"2");
}

TEST_CASE("XmlParser_attribute_without_closing_quote_runs_to_the_end_of_the_text") {
    CHECK(IdOf(L"id=\"5") == L"5></r>");
}

TEST_CASE("XmlParser_attribute_search_ignores_the_tag_name") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<id=\"5\"/>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetAttribute(L"id").empty());
}

TEST_CASE("XmlParser_attribute_not_found_leaves_the_value_unchanged") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r n=7><c m=\"1\"/></r>"));
    QxString value(L"old");
    CHECK_FALSE(parser.FindAttribute(L"n", value));
    CHECK_FALSE(parser.FindChildAttribute(L"m", value));
    REQUIRE(parser.FindElement());
    CHECK_FALSE(parser.FindAttribute(L"n", value));
    CHECK(value == L"old");
    REQUIRE(parser.FindChildElement());
    CHECK(parser.FindChildAttribute(L"m", value));
    CHECK(value == L"1");
    CHECK(parser.GetChildAttribute(L"m") == L"1");
    CHECK(parser.GetChildAttribute(L"n").empty());
}

TEST_CASE("XmlParser_sub_document_includes_white_space_up_to_the_next_tag") {
    CHECK(SubDocumentOf(L" <a>1</a>") == L"<a>1</a>");
    CHECK(SubDocumentOf(L"<a>1</a> \r\n\t") == L"<a>1</a> \r\n\t");
    CHECK(SubDocumentOf(L"<a/>\n<b/>") == L"<a/>\n");
    CHECK(SubDocumentOf(L"<a/>\nx") == L"<a/>");
    CHECK(SubDocumentOf(L"<a/> x <b/>") == L"<a/>");
    CHECK(SubDocumentOf(L"<a/>\v") == L"<a/>");
}

TEST_CASE("XmlParser_sub_document_of_a_child_ends_before_the_next_tag") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r><a><b/></a>\r\n<c/> </r>"));
    CHECK(parser.GetSubDocument().empty());
    REQUIRE(parser.FindChildElement(L"a"));
    CHECK(parser.GetChildSubDocument() == L"<a><b/></a>\r\n");
    REQUIRE(parser.FindChildElement(L"c"));
    CHECK(parser.GetChildSubDocument() == L"<c/> ");
    CHECK(parser.GetSubDocument() == parser.GetDocument());
}

TEST_CASE("XmlParser_data_and_attributes_of_the_child_read_as_numbers_and_flags") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r><a n=\" -42x\" f=\"TRUE\"> -42x</a><b n=\"abc\" f=\"yes\">TRUE</b>"
                               L"<c f=\"1\"><![CDATA[7]]></c><d/></r>"));
    const auto child = [&](const wchar_t* name) { REQUIRE(parser.FindChildElement(name, true)); };
    child(L"a");
    CHECK(parser.GetChildNumber() == -42);
    CHECK(parser.GetChildAttributeNumber(L"n") == -42);
    CHECK_FALSE(parser.GetChildFlag());
    CHECK(parser.GetChildAttributeFlag(L"f"));
    child(L"b");
    CHECK(parser.GetChildNumber() == 0);
    CHECK(parser.GetChildAttributeNumber(L"n") == 0);
    CHECK(parser.GetChildFlag());
    CHECK_FALSE(parser.GetChildAttributeFlag(L"f"));
    child(L"c");
    CHECK(parser.GetChildNumber() == 7);
    CHECK(parser.GetChildAttributeFlag(L"f"));
    child(L"d");
    CHECK(parser.GetChildNumber() == 0);
    CHECK_FALSE(parser.GetChildFlag());
    CHECK(parser.GetChildAttributeNumber(L"n") == 0);
    CHECK_FALSE(parser.GetChildAttributeFlag(L"f"));
}

TEST_CASE("XmlParser_numbers_and_flags_without_a_current_child_read_as_defaults") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r n=\"1\">1</r>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetChildNumber() == 0);
    CHECK_FALSE(parser.GetChildFlag());
    CHECK(parser.GetChildAttributeNumber(L"n") == 0);
    CHECK_FALSE(parser.GetChildAttributeFlag(L"n"));
}

TEST_CASE("XmlParser_raw_attribute_is_not_unescaped") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r a=\"&lt;1\"/>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetRawAttribute(L"a") == L"&lt;1");
    CHECK(parser.GetRawAttribute(L"b").empty());
}

TEST_CASE("XmlParser_finds_only_whole_names_without_their_prefix") {
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r><></><ab/><a b=\"1\">1</a><x:c:d/>< e/><x:f>2</x:f></r>"));
    const auto find = [&](const wchar_t* name) { return parser.FindChildElement(name, true); };
    CHECK(find(L"ab"));
    CHECK((find(L"a") && parser.GetChildData() == L"1"));
    CHECK(find(L"c:d"));
    CHECK(find(L"e"));
    CHECK((find(L"f") && parser.GetChildData() == L"2"));
    for (const wchar_t* name :
         {L"b", L"a b", L"d", L"c", L"x", L"x:f", L"x:c:d", L"A", L"ab/", L" e", L"/"}) {
        CAPTURE(name);
        CHECK_FALSE(find(name));
    }
}

#ifdef _WIN32
TEST_CASE("XmlParser_surrogate_pairs_are_preserved") {
    const std::wstring pair{static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00)};
    QxXmlParser parser;
    REQUIRE(parser.SetDocument(L"<r a=\"" + pair + L"\">" + pair + L"&lt;</r>"));
    REQUIRE(parser.FindElement());
    CHECK(parser.GetAttribute(L"a") == std::wstring_view(pair));
    CHECK(parser.GetData() == std::wstring_view(pair + L"<"));
    REQUIRE(parser.AddChildElement(L"c", pair));
    REQUIRE(parser.SetChildAttribute(L"b", pair));
    CHECK(parser.GetChildData() == std::wstring_view(pair));
    CHECK(parser.GetChildAttribute(L"b") == std::wstring_view(pair));
}
#endif
