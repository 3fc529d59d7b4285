// Input: eight bytes of a date value, then a date text. A valid date is in the calendar and round-trips
// through its text.

#include "Fuzzing.h"

#include "common/QxDateTime.h"

#include <bit>
#include <cfenv>
#include <chrono>
#include <cmath>

using Fuzzing::Require;

namespace {

constexpr double SecondsPerDay = 86400;

bool IsRealTime(const QxCalendarTime& t) {
    using namespace std::chrono;
    const year_month_day date(year(t.year), month(static_cast<unsigned>(t.month)),
                              day(static_cast<unsigned>(t.day)));
    return t.year >= 100 && t.year <= 9999 && t.month > 0 && t.day > 0 && date.ok() && t.hour >= 0 &&
           t.hour < 24 && t.minute >= 0 && t.minute < 60 && t.second >= 0 && t.second < 60;
}

/// Whole days since the zero date.
int DayOf(const QxCalendarTime& t) {
    using namespace std::chrono;
    const sys_days date =
        year(t.year) / month(static_cast<unsigned>(t.month)) / day(static_cast<unsigned>(t.day));
    return static_cast<int>((date - sys_days(year(1899) / 12 / 30)).count());
}

/// Hosts may unmask these floating-point exceptions.
void CheckRaisesNothing(const QxDateTime& value) {
    const QxDateTime other(1);
    QxCalendarTime fields;
    std::feclearexcept(FE_ALL_EXCEPT);
    const bool inCalendar = value.ToCalendar(fields);
    const bool before = other.IsAfter(value), after = value.IsAfter(other);
    Require(inCalendar || (!before && !after), "an order outside the calendar");
    Require(!before || !after, "before and after");
    Require(!value.IsUnset() || !value.IsValid() || value.Format().empty(), "unset with a text");
    Require(std::fetestexcept(FE_INVALID | FE_DIVBYZERO | FE_OVERFLOW) == 0, "a floating-point exception");
}

void CheckValue(const QxDateTime& value) {
    CheckRaisesNothing(value);
    const QxString text = value.Format();
    QxCalendarTime fields;
    if (!value.IsValid() || !value.ToCalendar(fields)) {
        Require(text == L"Invalid DateTime", "an invalid date has a text");
        return;
    }
    Require(IsRealTime(fields), "not a calendar time");
    const QxDateTime rounded = QxDateTime::FromCalendar(fields);
    Require(rounded.IsValid() && static_cast<int>(std::trunc(rounded.Value())) == DayOf(fields),
            "another day");
    // Before day zero the sign applies only to the day: -1.99 and 0.01 are one day apart.
    if (value.Value() >= 0)
        Require(std::fabs(rounded.Value() - value.Value()) * SecondsPerDay < 0.51, "not the nearest second");
    Require(rounded.Format() == text, "the rounded time has another text");
    if (!text.empty())
        Require(QxDateTime::Parse(text).Value() == rounded.Value(), "the text parses to another time");
    const QxString fraction = value.Format(7);
    Require(text.empty() ? fraction.empty() : fraction.view() == std::wstring(text.view()) + L".007",
            "milliseconds");
}

} // namespace

void RunInput(std::string_view bytes) {
    const std::uint64_t low = Fuzzing::TakeNumber(bytes), high = Fuzzing::TakeNumber(bytes);
    CheckValue(QxDateTime(std::bit_cast<double>(high << 32 | low)));
    // Most bit patterns are far outside the calendar, so these numbers also give a value near it.
    CheckValue(
        QxDateTime((static_cast<double>(low) - 0x20000000) / 1000 + static_cast<double>(high) / 0x100000000));
    const std::wstring text = Fuzzing::Widen(bytes);
    const QxDateTime parsed = QxDateTime::Parse(text);
    Require(parsed.IsValid() || parsed.Value() == 0, "an invalid date with a value");
    CheckValue(parsed);
}
