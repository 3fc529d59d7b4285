#include "CapturedLog.h"
#include "common/QxException.h"
#include "common/QxVersion.h"

#include <catch2/catch.hpp>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace {

constexpr wchar_t CountMessage[] = L"Version has fewer than two components or more than four components.";
constexpr wchar_t ComponentMessage[] =
    L"A major, minor, build, or revision component is not a valid non-zero number.";
constexpr wchar_t FieldCountMessage[] = L"FieldCount is less than 0, or more than 4, or FieldCount is more "
                                        L"than the number of components defined in "
                                        L"the current QxVersion object.";

std::wstring Text(const QxString& text) {
    return std::wstring(text.view());
}

/// The message of the exception that parsing throws; empty if it throws none.
std::wstring ParseError(std::wstring_view text) {
    try {
        QxVersion version(text, QxVersion::OnError::Throw);
    } catch (const QxException& error) {
        return Text(error.Message());
    }
    return {};
}

template<class Call>
std::wstring ErrorOf(Call call) {
    try {
        call();
    } catch (const QxException& error) {
        return Text(error.Message());
    }
    return {};
}

const QxVersion Invalid;

} // namespace

TEST_CASE("Version_default_is_invalid") {
    CHECK(Invalid == QxVersion(-1, -1, -1, -1));
    CHECK_FALSE(Invalid.IsValid());
    CapturedLog log;
    CHECK(ErrorOf([] { Invalid.CheckValid(); }) == L"Version is not valid.");
    CHECK(log.Texts().empty());
}

TEST_CASE("Version_default_prints_invalid_for_every_field_count") {
    for (unsigned count = 0; count <= 0xFFFF; ++count)
        if (Text(Invalid.AsString(static_cast<std::uint16_t>(count))) != L"<invalid>")
            FAIL("field count " << count);
    CHECK(Text(Invalid.AsString()) == L"<invalid>");
}

TEST_CASE("Version_from_numbers_stores_them_unchecked") {
    constexpr std::int32_t highest = std::numeric_limits<std::int32_t>::max();
    const QxVersion version(-5, 7, -9, highest);
    CHECK(version > QxVersion(-6, 7, -9, highest));
    CHECK(version < QxVersion(-4, 7, -9, highest));
    CHECK(version > QxVersion(-5, 6, -9, highest));
    CHECK(version < QxVersion(-5, 8, -9, highest));
    CHECK(version > QxVersion(-5, 7, -10, highest));
    CHECK(version < QxVersion(-5, 7, -8, highest));
    CHECK(version > QxVersion(-5, 7, -9, highest - 1));
    CHECK_FALSE(version.IsValid());
    CHECK(QxVersion(0, 0).IsValid());
    CHECK(QxVersion(0, 0, -1, 5).IsValid());
    CHECK_FALSE(QxVersion(0, -1).IsValid());
    CHECK_FALSE(QxVersion(0, 0, -2).IsValid());
    CHECK_FALSE(QxVersion(0, 0, 0, -2).IsValid());
}

TEST_CASE("Version_two_to_four_components_are_parsed") {
    CHECK(QxVersion(L"1.2") == QxVersion(1, 2, -1, -1));
    CHECK(QxVersion(L"1.2.3") == QxVersion(1, 2, 3, -1));
    CHECK(QxVersion(L"1.2.3.4") == QxVersion(1, 2, 3, 4));
    CHECK(QxVersion(L"0.0.0.0") == QxVersion(0, 0, 0, 0));
}

TEST_CASE("Version_empty_components_are_skipped") {
    CHECK(QxVersion(L"1..2") == QxVersion(1, 2));
    CHECK(QxVersion(L"1.2.") == QxVersion(1, 2));
    CHECK(QxVersion(L".1.2") == QxVersion(1, 2));
    CHECK(QxVersion(L"...1....2...") == QxVersion(1, 2));
}

TEST_CASE("Version_wrong_number_of_components_fails") {
    for (const wchar_t* text : {L"", L".", L"...", L"1", L"1.", L"1.2.3.4.5", L"a.b.c.d.e"}) {
        CHECK(ParseError(text) == CountMessage);
        CHECK(QxVersion(text) == Invalid);
    }
}

TEST_CASE("Version_component_other_than_digits_fails") {
    for (const wchar_t* text : {L"1.-2", L"1.+2", L"1.0x10", L"1. 2", L"1.2 ", L"a.b", L"1.2a", L"-1.2"}) {
        CHECK(ParseError(text) == ComponentMessage);
        CHECK(QxVersion(text) == Invalid);
    }
    CHECK(ParseError(std::wstring_view(L"1.2\0", 4)) == ComponentMessage);
}

TEST_CASE("Version_leading_zero_means_octal") {
    CHECK(QxVersion(L"1.010") == QxVersion(1, 8));
    CHECK(QxVersion(L"1.08") == QxVersion(1, 0));
    CHECK(QxVersion(L"1.09") == QxVersion(1, 0));
    CHECK(QxVersion(L"1.0179") == QxVersion(1, 15));
}

TEST_CASE("Version_component_beyond_32_bits_clamps") {
    CHECK(QxVersion(L"2147483647.2147483648") == QxVersion(2147483647, 2147483647));
    CHECK(QxVersion(L"1.99999999999999999999999999") == QxVersion(1, 2147483647));
}

TEST_CASE("Version_empty_component_parses_as_zero") {
    CHECK(QxVersion::ParseVersionComponent(L"") == 0);
    CHECK(QxVersion::ParseVersionComponent(L"0") == 0);
    CHECK(QxVersion::ParseVersionComponent(L"17") == 17);
}

TEST_CASE("Version_errors_are_logged_under_the_utility_category") {
    CapturedLog log(LogFormat::Category);
    CHECK(QxVersion(L"1") == Invalid);
    CHECK(QxVersion(L"1.x") == Invalid);
    CHECK(ErrorOf([] { QxVersion(1, 2).AsString(3); }) == FieldCountMessage);
    REQUIRE(log.Texts().size() == 3);
    CHECK(log.Texts()[0] == std::wstring(L"[CQx] [QxVersion::QxVersion] ") + CountMessage + L"\n");
    CHECK(log.Texts()[1] ==
          std::wstring(L"[CQx] [QxVersion::ParseVersionComponent] ") + ComponentMessage + L"\n");
    CHECK(log.Texts()[2] == std::wstring(L"[CQx] [QxVersion::AsString] ") + FieldCountMessage + L"\n");
}

TEST_CASE("Version_field_count_selects_the_components") {
    const QxVersion version(1, 2, 3, 4);
    CHECK(Text(version.AsString(0)).empty());
    CHECK(Text(version.AsString(1)) == L"1");
    CHECK(Text(version.AsString(2)) == L"1.2");
    CHECK(Text(version.AsString(3)) == L"1.2.3");
    CHECK(Text(version.AsString(4)) == L"1.2.3.4");
    CHECK(Text(QxVersion(2147483647, 0).AsString(2)) == L"2147483647.0");
}

TEST_CASE("Version_undefined_or_excess_field_fails") {
    CHECK(Text(QxVersion(1, 2).AsString(2)) == L"1.2");
    CHECK(ErrorOf([] { QxVersion(1, 2).AsString(3); }) == FieldCountMessage);
    CHECK(ErrorOf([] { QxVersion(1, 2).AsString(4); }) == FieldCountMessage);
    CHECK(ErrorOf([] { QxVersion(1, 2, 3).AsString(4); }) == FieldCountMessage);
    CHECK(ErrorOf([] { QxVersion(1, 2, -1, 4).AsString(3); }) == FieldCountMessage);
    CHECK(ErrorOf([] { QxVersion(1, 2, -1, 4).AsString(4); }) == FieldCountMessage);
    CHECK(ErrorOf([] { QxVersion(1, 2, 3, 4).AsString(5); }) == FieldCountMessage);
    CHECK(ErrorOf([] { QxVersion(1, 2, 3, 4).AsString(65535); }) == FieldCountMessage);
}

TEST_CASE("Version_text_has_only_the_defined_fields") {
    CHECK(Text(QxVersion(1, 2).AsString()) == L"1.2");
    CHECK(Text(QxVersion(1, 2, 3).AsString()) == L"1.2.3");
    CHECK(Text(QxVersion(1, 2, 3, 4).AsString()) == L"1.2.3.4");
    CHECK(Text(QxVersion(1, 2, -1, 4).AsString()) == L"1.2");
}

TEST_CASE("Version_comparison_is_numeric_by_component") {
    CHECK(QxVersion(L"1.2").Compare(QxVersion(L"1.2.0")) == -1);
    CHECK(QxVersion(L"1.2.0").Compare(QxVersion(L"1.2")) == 1);
    CHECK(QxVersion(L"2.0").Compare(QxVersion(L"10.0")) == -1);
    CHECK(QxVersion(L"1.3").Compare(QxVersion(L"1.2.9.9")) == 1);
    CHECK(QxVersion(L"1.2.3").Compare(QxVersion(L"1.2.4")) == -1);
    CHECK(QxVersion(L"1.2.3.4").Compare(QxVersion(L"1.2.3.3")) == 1);
    CHECK(QxVersion(L"1.2.3").Compare(QxVersion(L"1.2.3.0")) == -1);
    CHECK(QxVersion(L"1.2.3.4").Compare(QxVersion(1, 2, 3, 4)) == 0);
    CHECK(Invalid.Compare(Invalid) == 0);
    CHECK(Invalid.Compare(QxVersion(0, 0)) == -1);
}
