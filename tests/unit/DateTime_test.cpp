#include "TestData.h"

#include "common/QxDateTime.h"

#include <catch2/catch.hpp>

#include <cfenv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>

namespace {

using Status = QxDateTime::Status;

std::wstring Text(const QxDateTime& time) {
    return std::wstring(time.Format().view());
}

std::wstring Text(const QxDateTime& time, std::int32_t milliseconds) {
    return std::wstring(time.Format(milliseconds).view());
}

/// Parses the text and formats the result.
std::wstring Again(std::wstring_view text) {
    return Text(QxDateTime::Parse(text));
}

bool IsRejected(std::wstring_view text) {
    const QxDateTime time = QxDateTime::Parse(text);
    return Text(time) == L"Invalid DateTime" && time.Value() == 0;
}

constexpr double Second = 1.0 / 86400;

} // namespace

TEST_CASE("DateTime_full_text_is_parsed") {
    CHECK(QxDateTime::Parse(L"2010-03-04T00:00:00").Value() == 40241.0);
    CHECK(Again(L"2010-3-4T5:6:7") == L"2010-03-04T05:06:07");
    CHECK(Again(L"2010-03-04T05:06:07.089") == L"2010-03-04T05:06:07");
    CHECK(Again(L"2010-03-04T23:59:59 and more") == L"2010-03-04T23:59:59");
}

TEST_CASE("DateTime_date_alone_is_midnight") {
    CHECK(Again(L"2010-03-04") == L"2010-03-04T00:00:00");
    CHECK(Again(L"2010-3-4rest") == L"2010-03-04T00:00:00");
}

TEST_CASE("DateTime_time_alone_is_on_day_zero") {
    const QxDateTime time = QxDateTime::Parse(L"05:06:07");
    CHECK(time.Value() == Approx((5 * 3600 + 6 * 60 + 7) * Second));
    CHECK(Text(time) == L"05:06:07");
}

TEST_CASE("DateTime_numbers_may_have_leading_white_space_and_sign") {
    CHECK(Again(L" 2010- 3-\t4T +5: 6:7") == L"2010-03-04T05:06:07");
    CHECK(Again(L"+5:6:7") == L"05:06:07");
}

TEST_CASE("DateTime_text_with_wrong_fields_is_rejected") {
    for (const wchar_t* text :
         {L"", L" ", L"x", L"2010-03", L"2010-03-", L"2010-03-04T05:06", L"2010-03-04 05:06:07", L"05:06",
          L"5", L"2010 -03-04", L"-05:06:07", L"2010-03-04t05:06:07", L"T", L"-", L":", L"-:", L"5:6:x"})
        CHECK(IsRejected(text));
    CHECK(IsRejected(std::wstring_view(L"2010\0-03-04", 11)));
}

TEST_CASE("DateTime_field_outside_the_calendar_is_rejected") {
    for (const wchar_t* text :
         {L"2010-13-01", L"2010-00-01", L"2010-01-00", L"2010-01-32", L"2010-02-31", L"2010-02-29",
          L"1900-02-29", L"2010-04-31", L"99-01-01", L"10000-01-01", L"2010--1-01", L"24:00:00", L"23:60:00",
          L"23:59:60", L"12:-1:00", L"2010-01-01T24:00:00", L"99999999999-01-01", L"2010-99999999999-01"})
        CHECK(IsRejected(text));
}

TEST_CASE("DateTime_months_end_with_their_last_day") {
    for (const wchar_t* last :
         {L"2010-01-31", L"2010-02-28", L"2010-03-31", L"2010-04-30", L"2010-05-31", L"2010-06-30",
          L"2010-07-31", L"2010-08-31", L"2010-09-30", L"2010-10-31", L"2010-11-30", L"2010-12-31"}) {
        CHECK(Again(last) == std::wstring(last) + L"T00:00:00");
        std::wstring next = last;
        ++next.back(); // "31" becomes "32", "30" and "28" the day after
        CHECK(IsRejected(next));
    }
}

TEST_CASE("DateTime_leap_days_are_accepted") {
    CHECK(Again(L"2012-02-29") == L"2012-02-29T00:00:00");
    CHECK(Again(L"2000-02-29") == L"2000-02-29T00:00:00");
}

TEST_CASE("DateTime_calendar_limits_are_accepted") {
    CHECK(QxDateTime::Parse(L"100-01-01").Value() == -657434.0);
    CHECK(Again(L"100-01-01") == L"0100-01-01T00:00:00");
    CHECK(QxDateTime::Parse(L"9999-12-31").Value() == 2958465.0);
    CHECK(Again(L"9999-12-31T23:59:59") == L"9999-12-31T23:59:59");
}

TEST_CASE("DateTime_every_day_of_the_calendar_is_written_and_read") {
    QxCalendarTime previous;
    for (int day = -657434; day <= 2958465; ++day) {
        QxCalendarTime t;
        if (!QxDateTime(day).ToCalendar(t) || QxDateTime::FromCalendar(t).Value() != day)
            FAIL("day " << day);
        const bool follows =
            (t.year == previous.year && t.month == previous.month && t.day == previous.day + 1) ||
            (t.day == 1 && t.year == previous.year && t.month == previous.month + 1) ||
            (t.day == 1 && t.month == 1 && t.year == previous.year + 1);
        if (day > -657434 && !follows)
            FAIL("day " << day << " does not follow the day before");
        previous = t;
    }
    CHECK((previous.year == 9999 && previous.month == 12 && previous.day == 31));
}

TEST_CASE("DateTime_every_second_of_a_day_is_written_and_read") {
    for (const int year : {1850, 1899, 2024}) {
        for (int s = 0; s < 86400; ++s) {
            const QxCalendarTime t{year, 12, 30, s / 3600, s / 60 % 60, s % 60};
            QxCalendarTime back;
            if (!QxDateTime::FromCalendar(t).ToCalendar(back) || back.year != t.year || back.day != t.day ||
                back.hour != t.hour || back.minute != t.minute || back.second != t.second)
                FAIL("second " << s << " of " << year);
        }
    }
    SUCCEED("every second came back");
}

TEST_CASE("DateTime_fraction_before_day_zero_is_a_positive_time") {
    CHECK(Text(QxDateTime(-1.25)) == L"1899-12-29T06:00:00");
    CHECK(QxDateTime::Parse(L"1899-12-29T06:00:00").Value() == -1.25);
    CHECK(Text(QxDateTime(-0.5)) == L"12:00:00");
    CHECK(Text(QxDateTime(-1)) == L"1899-12-29T00:00:00");
}

TEST_CASE("DateTime_value_is_rounded_to_the_nearest_second") {
    CHECK(Text(QxDateTime(1 + 0.4 * Second)) == L"1899-12-31T00:00:00");
    CHECK(Text(QxDateTime(1 + 0.6 * Second)) == L"1899-12-31T00:00:01");
    CHECK(Text(QxDateTime(2 - 0.4 * Second)) == L"1900-01-01T00:00:00");
    CHECK(Text(QxDateTime(-2 - (1 - 0.4 * Second))) == L"1899-12-29T00:00:00");
}

TEST_CASE("DateTime_zero_date_is_written_as_empty") {
    CHECK(Text(QxDateTime()).empty());
    CHECK(Text(QxDateTime(0.4 * Second)).empty());
    CHECK(Text(QxDateTime(), 89).empty());
    CHECK(QxDateTime::Parse(L"1899-12-30").IsValid());
    CHECK(Again(L"1899-12-30T00:00:00").empty());
    CHECK(Again(L"1899-12-30T00:00:01") == L"00:00:01");
    CHECK(Again(L"1899-12-30T00:01:00") == L"00:01:00");
    CHECK(Again(L"1899-12-30T01:00:00") == L"01:00:00");
}

TEST_CASE("DateTime_null_is_written_as_empty") {
    CHECK(Text(QxDateTime(40241, Status::Null)).empty());
    CHECK(Text(QxDateTime(40241, Status::Null), 5).empty());
}

TEST_CASE("DateTime_value_outside_the_calendar_is_written_as_invalid") {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {infinity, -infinity, std::nan(""), 1e300, -1e300, 2958466.0,
                               2958466.0 - Second / 4, -657435.0, 4294967296.0, -9223372036854775808.0})
        CHECK(Text(QxDateTime(value)) == L"Invalid DateTime");
    CHECK(Text(QxDateTime(0, Status::Invalid)) == L"Invalid DateTime");
    CHECK(Text(QxDateTime(40241, Status::Invalid)) == L"Invalid DateTime");
}

TEST_CASE("DateTime_milliseconds_above_zero_are_appended") {
    const QxDateTime time = QxDateTime::Parse(L"2010-03-04T05:06:07");
    CHECK(Text(time, 1) == L"2010-03-04T05:06:07.001");
    CHECK(Text(time, 89) == L"2010-03-04T05:06:07.089");
    CHECK(Text(time, 999) == L"2010-03-04T05:06:07.999");
    CHECK(Text(time, 1234) == L"2010-03-04T05:06:07.1234");
    CHECK(Text(time, 0) == L"2010-03-04T05:06:07");
    CHECK(Text(time, -1) == L"2010-03-04T05:06:07");
    CHECK(Text(QxDateTime(0, Status::Invalid), 5) == L"Invalid DateTime.005");
}

TEST_CASE("DateTime_random_times_are_written_like_printf") {
    Choices choices(1);
    const auto between = [&](int low, int high) {
        return low + static_cast<int>(choices.Below(static_cast<unsigned>(high - low + 1)));
    };
    for (int i = 0; i < 20000; ++i) {
        const QxCalendarTime t{between(100, 9999), between(1, 12), between(1, 28),
                               between(0, 23),     between(0, 59), between(0, 59)};
        const int milliseconds = between(0, 3) == 0 ? between(1000, 2000000) : between(-2, 999);
        wchar_t text[64];
        int length = std::swprintf(text, std::size(text), L"%04d-%02d-%02dT%02d:%02d:%02d", t.year, t.month,
                                   t.day, t.hour, t.minute, t.second);
        if (milliseconds > 0)
            length += std::swprintf(text + length, std::size(text) - static_cast<std::size_t>(length),
                                    L".%03d", milliseconds);
        REQUIRE(Text(QxDateTime::FromCalendar(t), milliseconds) == text);
    }
}

TEST_CASE("DateTime_longest_text_fits_the_place_for_it") {
    constexpr std::int32_t most = std::numeric_limits<std::int32_t>::max();
    CHECK(Text(QxDateTime::Parse(L"9999-12-31T23:59:59"), most).size() == QxDateTime::MaxLength);
    CHECK(Text(QxDateTime(0, Status::Invalid), most) == L"Invalid DateTime.2147483647");
}

TEST_CASE("DateTime_unset_is_invalid_or_near_zero") {
    CHECK(QxDateTime().IsUnset());
    CHECK(QxDateTime(0.4 * Second).IsUnset());
    CHECK(QxDateTime(-0.4 * Second).IsUnset());
    CHECK(QxDateTime(5, Status::Invalid).IsUnset());
    CHECK(QxDateTime(5, Status::Null).IsUnset());
    CHECK_FALSE(QxDateTime(Second).IsUnset());
    CHECK_FALSE(QxDateTime(-1).IsUnset());
}

TEST_CASE("DateTime_order_is_chronological") {
    const double ascending[] = {-657434.0, -657434.75, -2.5, -1.0, -1.25, -1.75,     0.0,
                                -0.25,     0.5,        1.0,  1.25, 40000, 2958465.75};
    for (const double& a : ascending)
        for (const double& b : ascending)
            CHECK(QxDateTime(a).IsAfter(QxDateTime(b)) == (&a > &b));
    CHECK_FALSE(QxDateTime(-0.25).IsAfter(QxDateTime(0.25))); // both are 06:00 of day zero
    CHECK_FALSE(QxDateTime(0.25).IsAfter(QxDateTime(-0.25)));
}

TEST_CASE("DateTime_invalid_values_have_no_order") {
    const double infinity = std::numeric_limits<double>::infinity();
    for (const double value : {infinity, -infinity, std::nan(""), 1e300, -1e300, 2958466.0, -657435.0}) {
        CHECK_FALSE(QxDateTime(value).IsAfter(QxDateTime(5)));
        CHECK_FALSE(QxDateTime(5).IsAfter(QxDateTime(value)));
    }
    for (const Status status : {Status::Invalid, Status::Null}) {
        CHECK_FALSE(QxDateTime(6, status).IsAfter(QxDateTime(5)));
        CHECK_FALSE(QxDateTime(6).IsAfter(QxDateTime(5, status)));
    }
}

TEST_CASE("DateTime_keeps_every_bit_of_its_value") {
    for (const unsigned long long bits :
         {0x7FF0000000000001ull, 0xFFF8000000000000ull, 0x8000000000000000ull, 1ull}) {
        double value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        CHECK(QxDateTime(value).Bits() == bits);
    }
    CHECK(Text(QxDateTime(std::numeric_limits<double>::denorm_min())).empty());
    CHECK(QxDateTime(-0.0).IsUnset());
}

TEST_CASE("DateTime_of_any_bits_raises_no_floating_point_exception") {
    for (const unsigned long long bits :
         {0x7FF8000000000000ull, 0xFFF8000000000000ull, 0x7FF0000000000001ull, 0xFFF4000000000000ull,
          0x7FF0000000000000ull, 0xFFF0000000000000ull, 0x7FEFFFFFFFFFFFFFull, 0xFFEFFFFFFFFFFFFFull,
          0x0000000000000001ull, 0x800FFFFFFFFFFFFFull, 0x8000000000000000ull, 0x43E0000000000000ull,
          0xC1E0000000200000ull, 0x4146924100000000ull, 0xC124103600000000ull, 0x40E3A6651EB851ECull}) {
        INFO(std::hex << bits);
        double value = 0;
        std::memcpy(&value, &bits, sizeof(value));
        const QxDateTime time(value), other(1);
        std::feclearexcept(FE_ALL_EXCEPT);
        const QxString text = time.Format();
        const bool unset = time.IsUnset(), before = other.IsAfter(time), after = time.IsAfter(other);
        const int raised = std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW);
        CHECK(raised == 0);
        CHECK(unset == text.empty());
        CHECK_FALSE((before && after));
    }
}
