#include "TestData.h"

#include "common/xml/QxXmlScan.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <string>
#include <vector>

using QxXmlScan::EndTag;
using QxXmlScan::Token;

namespace {

/// The tokens of a text; quoted tokens keep their quotes.
std::vector<std::wstring> TokensOf(std::wstring_view text) {
    std::vector<std::wstring> tokens;
    for (Token token; QxXmlScan::NextToken(text, token);) {
        const std::wstring found(token.In(text));
        tokens.push_back(token.quoted ? L"\"" + found + L"\"" : found);
    }
    return tokens;
}

using Tokens = std::vector<std::wstring>;

} // namespace

TEST_CASE("XmlScan_token_ends_at_white_space_and_specials") {
    CHECK(TokensOf(L"name a = \"b c\" />") == Tokens{L"name", L"a", L"=", L"\"b c\"", L"/", L">"});
    CHECK(TokensOf(L"a<b>c=d\\e/f?g!h") ==
          Tokens{L"a", L"<", L"b", L">", L"c", L"=", L"d", L"\\", L"e", L"/", L"f", L"?", L"g", L"!", L"h"});
    CHECK(TokensOf(L"a\tb\nc\rd\ve") == Tokens{L"a", L"b", L"c", L"d\ve"});
    CHECK(TokensOf(L"a\u20ACb") == Tokens{L"a\u20ACb"});
}

TEST_CASE("XmlScan_quoted_token_runs_to_the_next_double_quote") {
    CHECK(TokensOf(L"\"a\"\"\"\"b") == Tokens{L"\"a\"", L"\"\"", L"\"b\""});
    CHECK(TokensOf(L"'a b'") == Tokens{L"'a", L"b'"});
    CHECK(TokensOf(L"a\"b c\"") == Tokens{L"a\"b", L"c\""});
    CHECK(TokensOf(L"\"") == Tokens{L"\"\""});
}

TEST_CASE("XmlScan_token_at_the_end_of_the_text_is_read") {
    CHECK(TokensOf(L" a") == Tokens{L"a"});
    CHECK(TokensOf(L" ").empty());
    CHECK(TokensOf(L"").empty());
}

TEST_CASE("XmlScan_find_works_at_every_offset_of_every_length") {
    for (std::size_t length = 0; length < 40; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::wstring text(length, L'x');
            text[at] = L'<';
            for (std::size_t from = 0; from <= length; ++from) {
                const std::size_t expected = from <= at ? at : length;
                REQUIRE(QxXmlScan::Find(text, L'<', static_cast<std::int32_t>(from)) ==
                        static_cast<std::int32_t>(expected));
            }
        }
    }
}

TEST_CASE("XmlScan_find_returns_the_first_of_several") {
    CHECK(QxXmlScan::Find(L"xxxxxxxxx<x<<<<<<<<<<<<<<<<<<", L'<', 0) == 9);
    CHECK(QxXmlScan::Find(L"x\u3C3C\u003C", L'<', 0) == 2);
}

TEST_CASE("XmlScan_block_searches_agree_with_plain_ones_on_random_text") {
    Choices choices(1);
    for (int i = 0; i < 3000; ++i) {
        constexpr std::wstring_view characters = L"<<>/!?@\"&ax\uFFFF\u3C3C\u013C\u2226";
        std::wstring text;
        for (unsigned length = choices.Below(60); length > 0; --length)
            text += characters[choices.Below(static_cast<unsigned>(characters.size()))];
        const std::size_t from = choices.Below(static_cast<unsigned>(text.size()) + 1);
        const std::size_t to = from + choices.Below(static_cast<unsigned>(text.size() - from) + 1);
        const auto start = static_cast<std::int32_t>(from);
        REQUIRE(QxXmlScan::Occurs(text, L'&', start, static_cast<std::int32_t>(to)) ==
                (text.substr(from, to - from).find(L'&') != std::wstring::npos));

        bool hasEntity = !text.empty();
        const std::size_t quote = std::min(text.find(L'"', from), text.size());
        REQUIRE(QxXmlScan::FindQuote(text, start, hasEntity) == static_cast<std::int32_t>(quote));
        REQUIRE(hasEntity == (text.substr(from, quote - from).find(L'&') != std::wstring::npos));

        std::int32_t startTags = 0;
        for (std::size_t at = 0; at + 1 < text.size(); ++at)
            startTags += text[at] == L'<' && text[at + 1] > L'?';
        REQUIRE(QxXmlScan::CountStartTags(text) == startTags);
    }
}

TEST_CASE("XmlScan_terminator_is_found_completely_and_not_before_the_start") {
    CHECK(QxXmlScan::FindTerminator(L"<!-- > -> -->", L"-->", 1) == 10);
    CHECK(QxXmlScan::FindTerminator(L"<!-->", L"-->", 1) == 2);
    CHECK(QxXmlScan::FindTerminator(L"<!-->", L"-->", 3) == 5);
    CHECK(QxXmlScan::FindTerminator(L"<?>", L"?>", 1) == 1);
    CHECK(QxXmlScan::FindTerminator(L"]]]>", L"]]>", 0) == 1);
    CHECK(QxXmlScan::FindTerminator(L"]]", L"]]>", 0) == 2);
}

TEST_CASE("XmlScan_start_tags_are_counted_by_their_names") {
    CHECK(QxXmlScan::CountStartTags(L"<?x?><a><b/><!-- --></a><") == 2);
    CHECK(QxXmlScan::CountStartTags(L"") == 0);
    CHECK(QxXmlScan::CountStartTags(L"<_>< a><1><x:y>") == 2);
}

TEST_CASE("XmlScan_common_length_stops_at_a_difference_a_bracket_a_quote_and_the_end") {
    for (std::size_t length = 0; length < 20; ++length) {
        const std::wstring name(length, L'n');
        const auto expected = static_cast<std::int32_t>(length);
        const auto common = [&](const wchar_t* behindFirst, const wchar_t* behindSecond) {
            const std::wstring text = name + behindFirst + name + behindSecond;
            return QxXmlScan::CommonLength(text, 0,
                                           static_cast<std::int32_t>(text.rfind(name + behindSecond)));
        };
        INFO(length);
        CHECK(common(L">x", L">xxxxxxxxxxxxxxxxxx") == expected);
        CHECK(common(L" x>", L">xxxxxxxxxxxxxxxxxx") == expected);
        CHECK(common(L"\"x\"", L"\"xxxxxxxxxxxxxxxxxx") == expected);
        CHECK(common(L"x", L"yxxxxxxxxxxxxxxxxxx") == expected);
        CHECK(common(L"x", L">") == expected);
    }
    CHECK(QxXmlScan::CommonLength(L"aaaa", 0, 2) == 2);
}

TEST_CASE("XmlScan_tag_name_is_the_first_token") {
    CHECK(QxXmlScan::TagName(L"<a>", 0) == L"a");
    CHECK(QxXmlScan::TagName(L"< \ta b>", 0) == L"a");
    CHECK(QxXmlScan::TagName(L"<<a>", 0) == L"<");
    CHECK(QxXmlScan::TagName(L"<a", 0) == L"a");
}

TEST_CASE("XmlScan_prefix_ends_at_the_first_colon") {
    CHECK(QxXmlScan::WithoutPrefix(L"a") == L"a");
    CHECK(QxXmlScan::WithoutPrefix(L"n:a") == L"a");
    CHECK(QxXmlScan::WithoutPrefix(L"n:m:a") == L"m:a");
    CHECK(QxXmlScan::WithoutPrefix(L"n:").empty());
}

TEST_CASE("XmlScan_end_tag_is_read_by_its_tokens") {
    std::int32_t close = -1;
    CHECK(QxXmlScan::ReadEndTag(L"</a>", 0, L"a", close) == EndTag::Complete);
    CHECK(close == 3);
    CHECK(QxXmlScan::ReadEndTag(L"<a>", 0, L"a", close) == EndTag::NotAnEndTag);
    CHECK(QxXmlScan::ReadEndTag(L"<>", 0, L"a", close) == EndTag::NotAnEndTag);
    CHECK(QxXmlScan::ReadEndTag(L"</b>", 0, L"a", close) == EndTag::OtherName);
    CHECK(QxXmlScan::ReadEndTag(L"</>", 0, L"a", close) == EndTag::OtherName);
    CHECK(QxXmlScan::ReadEndTag(L"</a", 0, L"a", close) == EndTag::NotCompleted);
    CHECK(QxXmlScan::ReadEndTag(L"<", 0, L"a", close) == EndTag::NotCompleted);
    CHECK(close == 3);
}
