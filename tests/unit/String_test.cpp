#include "common/text/QxString.h"

#include <catch2/catch.hpp>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace std::literals;

TEST_CASE("String_default_is_empty_and_terminated") {
    const QxString text;
    CHECK(text.empty());
    CHECK(text.size() == 0);
    REQUIRE(text.c_str() != nullptr);
    CHECK(*text.c_str() == L'\0');
    CHECK(text.view().data() != nullptr);
}

TEST_CASE("String_null_pointer_and_empty_text_are_empty") {
    CHECK(QxString(static_cast<const wchar_t*>(nullptr)).empty());
    CHECK(QxString(L"").empty());
    CHECK(QxString(std::wstring()).empty());
    CHECK(QxString(std::wstring_view()).empty());
}

TEST_CASE("String_characters_are_kept_with_embedded_nul") {
    const QxString text(L"a\0b"sv);
    CHECK(text.size() == 3);
    CHECK(text.view() == L"a\0b"sv);
    CHECK(text.c_str()[3] == L'\0');
}

TEST_CASE("String_copy_shares_the_characters") {
    const QxString text(L"shared");
    const QxString copy(text); // NOLINT(performance-unnecessary-copy-initialization): the copy is under test
    CHECK(copy.c_str() == text.c_str());
    CHECK(copy == text);
}

TEST_CASE("String_copy_outlives_the_original") {
    QxString copy;
    {
        const QxString text(L"outlived");
        copy = text;
    }
    CHECK(copy == L"outlived");
}

TEST_CASE("String_moved_from_is_empty") {
    QxString text(L"moved");
    const QxString target(std::move(text));
    CHECK(target == L"moved");
    CHECK(text.empty());
}

TEST_CASE("String_assigned_to_itself_is_unchanged") {
    QxString text(L"self");
    const QxString& alias = text;
    text = alias;
    CHECK(text == L"self");
    text = text.view().substr(1);
    CHECK(text == L"elf");
}

TEST_CASE("String_equality_compares_whole_texts") {
    CHECK(QxString(L"a") == L"a"sv);
    CHECK_FALSE(QxString(L"a") == QxString(L"ab"));
    CHECK_FALSE(QxString(L"a\0b"sv) == QxString(L"a"));
    CHECK(QxString() == QxString(L""));
}

TEST_CASE("String_is_one_pointer_wide") {
    CHECK(sizeof(QxString) == sizeof(void*));
}

TEST_CASE("String_many_copies_are_released") {
    const QxString text(std::wstring(1000, L'x'));
    std::vector<QxString> copies(1000, text);
    copies.clear();
    CHECK(text.size() == 1000);
    CHECK(text.view() == std::wstring(1000, L'x'));
}
