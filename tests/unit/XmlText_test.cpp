#include "TestData.h"

#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlText.h"
#include "common/xml/QxXmlWriter.h"

#include <catch2/catch.hpp>

#include <limits>
#include <string>

using Escape = QxXmlText::Escape;

namespace {

std::wstring Escaped(std::wstring_view text, Escape kind) {
    QxXmlText out;
    out.AppendEscaped(text, kind);
    return std::wstring(out.View());
}

std::wstring Unescaped(std::wstring_view text) {
    QxXmlText out;
    out.AppendUnescaped(text);
    return std::wstring(out.View());
}

/// Escapes character by character.
std::wstring PlainlyEscaped(std::wstring_view text, Escape kind) {
    std::wstring out;
    for (const wchar_t character : text) {
        if (character == L'<')
            out += L"&lt;";
        else if (character == L'>')
            out += L"&gt;";
        else if (character == L'&')
            out += L"&amp;";
        else if (character == L'\'' && kind == Escape::Attribute)
            out += L"&apos;";
        else if (character == L'"' && kind == Escape::Attribute)
            out += L"&quot;";
        else
            out += character;
    }
    return out;
}

/// A text of the five characters and of others that differ from one of them in a bit or in the high byte.
std::wstring RandomText(Choices& choices) {
    constexpr std::wstring_view characters = L"<&>'\"=#%$!|~fg\u013C\u3C3C\u3E3E\u2626\u2727\u0000\uFFFF";
    std::wstring text(choices.Below(50), L'x');
    const unsigned rare = 1 + choices.Below(20);
    for (wchar_t& character : text) {
        if (choices.Below(rare) == 0)
            character = characters[choices.Below(static_cast<unsigned>(characters.size()))];
    }
    return text;
}

} // namespace

TEST_CASE("XmlText_escapes_random_text_like_the_plain_version") {
    Choices choices(1);
    for (int i = 0; i < 20000; ++i) {
        const std::wstring text = RandomText(choices);
        const std::wstring data = PlainlyEscaped(text, Escape::Data);
        const std::wstring value = PlainlyEscaped(text, Escape::Attribute);
        REQUIRE(Escaped(text, Escape::Data) == data);
        REQUIRE(Escaped(text, Escape::Attribute) == value);
        const std::wstring name(1 + choices.Below(30), L'n');
        QxXmlText out;
        out.AppendElement(name, text);
        out.AppendStartTag(name);
        out.AppendAttribute(name, text);
        const std::wstring element =
            text.empty() ? L"<" + name + L"/>" : L"<" + name + L">" + data + L"</" + name + L">";
        REQUIRE(out.View() == element + L"<" + name + L" " + name + L"=\"" + value + L"\"");
    }
}

TEST_CASE("XmlText_data_escapes_three_characters") {
    CHECK(Escaped(L"<&>'\"", Escape::Data) == L"&lt;&amp;&gt;'\"");
    CHECK(Escaped(L"a<b", Escape::Data) == L"a&lt;b");
    CHECK(Escaped(L"&lt;", Escape::Data) == L"&amp;lt;");
    CHECK(Escaped(L"", Escape::Data).empty());
    CHECK(Escaped(L"\x80\xFF\u20AC", Escape::Data) == L"\x80\xFF\u20AC");
}

TEST_CASE("XmlText_attribute_escapes_five_characters") {
    CHECK(Escaped(L"<&>'\"", Escape::Attribute) == L"&lt;&amp;&gt;&apos;&quot;");
}

TEST_CASE("XmlText_escapes_at_every_position") {
    // Long texts are searched in blocks; a character at a block's edge must be found.
    for (std::size_t length = 1; length <= 40; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            CAPTURE(length, at);
            std::wstring text(length, L'x');
            text[at] = L'<';
            CHECK(Escaped(text, Escape::Data) ==
                  std::wstring(at, L'x') + L"&lt;" + std::wstring(length - at - 1, L'x'));
            text[at] = L'\'';
            CHECK(Escaped(text, Escape::Data) == text);
            CHECK(Escaped(text, Escape::Attribute) ==
                  std::wstring(at, L'x') + L"&apos;" + std::wstring(length - at - 1, L'x'));
        }
    }
}

TEST_CASE("XmlText_escaping_reserves_a_tenth_and_one_entity") {
    const std::wstring text(1000, L'x'), room(100 + 7, L'x');
    QxXmlText out;
    out.AppendEscaped(text, Escape::Data);
    const wchar_t* const buffer = out.View().data();
    out.Append(room);
    CHECK((out.View().data() == buffer));
}

TEST_CASE("XmlText_escaping_text_of_entities_only_grows_as_needed") {
    const std::wstring escaped = Escaped(std::wstring(10000, L'"'), Escape::Attribute);
    CHECK(escaped.size() == 60000);
    CHECK(Unescaped(escaped) == std::wstring(10000, L'"'));
}

TEST_CASE("XmlText_unescaping_decodes_the_five_entities_only") {
    CHECK(Unescaped(L"&lt;&amp;&gt;&apos;&quot;") == L"<&>'\"");
    CHECK(Unescaped(L"&#65;&#x41;&nbsp;") == L"&#65;&#x41;&nbsp;");
    CHECK(Unescaped(L"&LT;&lt &l t;") == L"&LT;&lt &l t;");
    CHECK(Unescaped(L"&&lt;&") == L"&<&");
    CHECK(Unescaped(L"&amp;lt;") == L"&lt;");
    CHECK(Unescaped(L"&quot") == L"&quot");
    CHECK(Unescaped(L"").empty());
}

TEST_CASE("XmlText_appends_to_existing_text") {
    QxXmlText out;
    out.Append(L'x');
    out.AppendEscaped(L"<", Escape::Data);
    out.AppendUnescaped(L"&gt;");
    out.AppendElement(L"n", L"a'b");
    out.AppendElement(L"n", L"");
    out.AppendAttribute(L"m", L"a'b");
    CHECK(out.View() == L"x&lt;><n>a'b</n><n/> m=\"a&apos;b\"");
}

TEST_CASE("XmlWriter_writes_elements_numbers_flags_and_dates") {
    QxXmlWriter writer;
    writer.Element(L"t", L"a<b");
    writer.Element(L"e", L"");
    writer.Element(L"n", std::int32_t{-42});
    writer.Element(L"m", std::numeric_limits<std::int32_t>::min());
    writer.Element(L"f", true);
    writer.Element(L"g", false);
    writer.Element(L"d", QxDateTime::Parse(L"2010-03-04T05:06:07"), 89);
    writer.Element(L"z", QxDateTime());
    writer.Raw(L"<x/>");
    const std::wstring expected = L"<t>a&lt;b</t><e/><n>-42</n><m>-2147483648</m><f>true</f><g>false</g>"
                                  L"<d>2010-03-04T05:06:07.089</d><z/><x/>";
    CHECK(writer.Text() == expected);
}

TEST_CASE("XmlWriter_writes_start_tags_with_attributes") {
    QxXmlWriter writer;
    writer.OpenStartTag(L"r");
    writer.Attribute(L"a", L"\"1\"");
    writer.CloseStartTag();
    writer.OpenStartTag(L"c");
    writer.CloseEmptyTag();
    writer.OpenStartTag(L"d");
    writer.Attribute(L"b", L"");
    writer.CloseWithData(L"d", L">");
    writer.OpenStartTag(L"e");
    writer.CloseWithData(L"e", L"");
    writer.EndTag(L"r");
    CHECK(writer.Text() == L"<r a=\"&quot;1&quot;\"><c/><d b=\"\">&gt;</d><e/></r>");
}

TEST_CASE("XmlWriter_writes_the_same_text_as_edits_of_the_parser") {
    const std::wstring_view data = L"a<b>&'\"c";
    QxXmlParser parser;
    parser.AddElement(L"Root");
    REQUIRE(parser.SetAttribute(L"xmlns", L"http://x/'y'"));
    REQUIRE(parser.SetAttribute(L"Version", L"7.26"));
    REQUIRE(parser.AddChildElement(L"Text", data));
    REQUIRE(parser.AddChildElement(L"Empty"));
    REQUIRE(parser.AddChildElement(L"Target", data));
    REQUIRE(parser.SetChildAttribute(L"Type", data));
    REQUIRE(parser.AddChildElement(L"Bare"));
    REQUIRE(parser.SetChildAttribute(L"Type", L""));
    REQUIRE(parser.AddChildElement(L"Group"));
    REQUIRE(parser.IntoElement());
    REQUIRE(parser.AddChildElement(L"Inner", L"1"));

    QxXmlWriter writer;
    writer.OpenStartTag(L"Root");
    writer.Attribute(L"xmlns", L"http://x/'y'");
    writer.Attribute(L"Version", L"7.26");
    writer.CloseStartTag();
    writer.Element(L"Text", data);
    writer.Element(L"Empty", L"");
    writer.OpenStartTag(L"Target");
    writer.Attribute(L"Type", data);
    writer.CloseWithData(L"Target", data);
    writer.OpenStartTag(L"Bare");
    writer.Attribute(L"Type", L"");
    writer.CloseWithData(L"Bare", L"");
    writer.OpenStartTag(L"Group");
    writer.CloseStartTag();
    writer.Element(L"Inner", std::int32_t{1});
    writer.EndTag(L"Group");
    writer.EndTag(L"Root");

    CHECK(parser.GetDocument() == writer.Text());
    QxXmlParser again;
    CHECK(again.SetDocument(writer.Text()));
}

TEST_CASE("XmlText_assigns_and_replaces_like_a_string") {
    Choices choices(3);
    QxXmlText text;
    std::wstring expected;
    for (int i = 0; i < 3000; ++i) {
        const auto size = static_cast<unsigned>(expected.size());
        const std::size_t from = choices.Below(size + 1);
        const std::size_t length = choices.Below(size + 1 - static_cast<unsigned>(from));
        if (choices.Below(8) == 0) {
            // A part of the text itself, or a new text.
            if (choices.Below(2) == 0) {
                text.Assign(text.View().substr(from, length));
                expected = expected.substr(from, length);
            } else {
                expected = RandomText(choices);
                text.Assign(expected);
            }
        } else {
            const std::wstring piece = RandomText(choices);
            text.Replace(from, length, piece);
            expected.replace(from, length, piece);
        }
        REQUIRE(text.View() == expected);
    }
}
