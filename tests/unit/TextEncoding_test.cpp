#include "common/text/TextEncoding.h"

#include <catch2/catch.hpp>

#include <string>
#include <string_view>

using namespace std::literals;
using TextEncoding::Decode;

TEST_CASE("Decode_mark_selects_the_encoding_and_is_dropped") {
    CHECK(Decode("\xEF\xBB\xBF"
                 "a\xC3\xA4"sv) == L"a\x00E4");
    CHECK(Decode("\xFF\xFE"
                 "a\0\xE4\0"sv) == L"a\x00E4");
    CHECK(Decode("\xFE\xFF"
                 "\0a\0\xE4"sv) == L"a\x00E4");
}

TEST_CASE("Decode_without_a_mark_is_utf8") {
    CHECK(Decode("a\xC3\xA4\xE2\x82\xAC"sv) == L"a\x00E4\x20AC");
    CHECK(Decode("a\0b"sv) == L"a\0b"s);
    CHECK(Decode(""sv) == L"");
}

TEST_CASE("Decode_mark_alone_is_empty") {
    CHECK(Decode("\xEF\xBB\xBF"sv) == L"");
    CHECK(Decode("\xFF\xFE"sv) == L"");
    CHECK(Decode("\xFE\xFF"sv) == L"");
}

TEST_CASE("Decode_characters_beyond_the_basic_plane_are_kept") {
    CHECK(Decode("\xF0\x9F\x96\xA8"sv) == L"\U0001F5A8");
    CHECK(Decode("\xFF\xFE\x3D\xD8\xA8\xDD"sv) == L"\U0001F5A8");
    CHECK(Decode("\xFE\xFF\xD8\x3D\xDD\xA8"sv) == L"\U0001F5A8");
    CHECK(Decode("\xF0\x90\x80\x80"sv) == L"\U00010000");
    CHECK(Decode("\xF4\x8F\xBF\xBF"sv) == L"\U0010FFFF");
    CHECK(Decode("\xFF\xFE\x00\xD8\x00\xDC"sv) == L"\U00010000");
    CHECK(Decode("\xFF\xFE\xFF\xDB\xFF\xDF"sv) == L"\U0010FFFF");
}

TEST_CASE("Decode_malformed_utf8_becomes_the_replacement_character") {
    CHECK(Decode("a\xFFz"sv) == L"a\xFFFDz");
    CHECK(Decode("\x80"sv) == L"\xFFFD");
    CHECK(Decode("\xC0\xAF"sv) == L"\xFFFD\xFFFD");           // overlong
    CHECK(Decode("\xE0\x80\x80"sv) == L"\xFFFD\xFFFD\xFFFD"); // overlong
    CHECK(Decode("\xED\xA0\x80"sv) == L"\xFFFD\xFFFD\xFFFD"); // surrogate
    CHECK(Decode("\xF4\x90\x80\x80"sv) == L"\xFFFD\xFFFD\xFFFD\xFFFD");
    CHECK(Decode("\xF0\x9F\x96z"sv) == L"\xFFFDz");
    CHECK(Decode("\xC3(x"sv) == L"\xFFFD(x");
    CHECK(Decode("\xC3\x7F"sv) == L"\xFFFD\x7F");
    CHECK(Decode("\xC3\xC0"sv) == L"\xFFFD\xFFFD");
}

TEST_CASE("Decode_truncated_utf8_becomes_the_replacement_character") {
    CHECK(Decode("a\xC3"sv) == L"a\xFFFD");
    CHECK(Decode("a\xE2\x82"sv) == L"a\xFFFD");
    CHECK(Decode("a\xF0\x9F\x96"sv) == L"a\xFFFD");
    CHECK(Decode("\xEF\xBB"sv) == L"\xFFFD");
}

TEST_CASE("Decode_lone_surrogate_becomes_the_replacement_character") {
    CHECK(Decode("\xFF\xFE\x3D\xD8"sv) == L"\xFFFD");
    CHECK(Decode("\xFF\xFE\x3D\xD8"
                 "a\0"sv) == L"\xFFFD"
                             L"a");
    CHECK(Decode("\xFF\xFE\xA8\xDD"
                 "a\0"sv) == L"\xFFFD"
                             L"a");
    CHECK(Decode("\xFF\xFE\x3D\xD8\x00\xE0"sv) == L"\xFFFD\xE000");
}

TEST_CASE("Decode_odd_byte_count_becomes_the_replacement_character") {
    CHECK(Decode("\xFF\xFE"
                 "a\0b"sv) == L"a\xFFFD");
    CHECK(Decode("\xFE\xFF\0"sv) == L"\xFFFD");
    CHECK(Decode("\xFF\xFE\x3D\xD8\xA8"sv) == L"\xFFFD\xFFFD");
    CHECK(Decode("\xFE\xFF\xD8\x3D\xDD"sv) == L"\xFFFD\xFFFD"); // a low surrogate, but for its second byte
}

TEST_CASE("Decode_any_two_bytes_become_text_or_replacements") {
    for (unsigned first = 0; first < 256; ++first) {
        for (unsigned second = 0; second < 256; ++second) {
            const char bytes[] = {static_cast<char>(first), static_cast<char>(second)};
            const std::size_t size = Decode({bytes, 2}).size();
            const bool mark = (first == 0xFF && second == 0xFE) || (first == 0xFE && second == 0xFF);
            if (mark ? size != 0 : size < 1 || size > 2)
                FAIL("bytes " << first << " " << second);
        }
    }
    SUCCEED("every pair of bytes was read");
}

TEST_CASE("Decode_counts_malformed_sequences_but_not_the_replacement_character_itself") {
    const auto malformedIn = [](std::string_view bytes) {
        TextEncoding::Malformed malformed{99, 99};
        Decode(bytes, &malformed);
        return malformed;
    };
    CHECK(malformedIn("a\xEF\xBF\xBD z"sv).count == 0);
    CHECK(malformedIn("\xC3\xA4\xFFz\xE2\x82"sv).count == 2);
    CHECK(malformedIn("\xC3\xA4\xFFz\xE2\x82"sv).first == 1);
    CHECK(malformedIn("\xFF\xFE"
                      "a\0\xFD\xFF"sv)
              .count == 0);
    CHECK(malformedIn("\xFF\xFE"
                      "a\0\x3D\xD8"
                      "b\0\0"sv)
              .count == 2);
    CHECK(malformedIn("\xFF\xFE"
                      "a\0\x3D\xD8"
                      "b\0\0"sv)
              .first == 1);
}
