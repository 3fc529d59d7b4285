#include "QxDateTime.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <initializer_list>

namespace {

constexpr int SecondsPerDay = 86400;
constexpr int FirstYear = 100, LastYear = 9999;

/// Days since 1 March of year 0 of the proleptic Gregorian calendar. Years start in March, so that the leap
/// day comes last.
constexpr std::int32_t DayNumber(int year, int month, int day) noexcept {
    const int shifted = month > 2 ? month - 3 : month + 9;
    const int y = month > 2 ? year : year - 1;
    return 365 * y + y / 4 - y / 100 + y / 400 + (153 * shifted + 2) / 5 + day - 1;
}

constexpr std::int32_t DayZero = DayNumber(1899, 12, 30);
constexpr std::int32_t FirstDay = DayNumber(FirstYear, 1, 1) - DayZero;
constexpr std::int32_t LastDay = DayNumber(LastYear, 12, 31) - DayZero;

constexpr std::uint64_t BitsOf(double value) noexcept {
    return std::bit_cast<std::uint64_t>(value);
}

constexpr std::uint64_t SignBit = BitsOf(-0.0);
constexpr std::uint64_t HalfSecond = BitsOf(0.5 / SecondsPerDay);

constexpr bool IsLeapYear(int year) noexcept {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysInMonth(int year, int month) noexcept {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : days[month - 1];
}

constexpr bool IsBetween(int value, int low, int high) noexcept {
    return value >= low && value <= high;
}

bool IsRealTime(const QxCalendarTime& t) noexcept {
    return IsBetween(t.year, FirstYear, LastYear) && IsBetween(t.month, 1, 12) &&
           IsBetween(t.day, 1, DaysInMonth(t.year, t.month)) && IsBetween(t.hour, 0, 23) &&
           IsBetween(t.minute, 0, 59) && IsBetween(t.second, 0, 59);
}

/// The inverse of DayNumber.
void SetDate(QxCalendarTime& fields, std::int32_t dayNumber) noexcept {
    constexpr int daysPer400Years = 146097, daysPer100Years = 36524, daysPer4Years = 1461;
    const int era = dayNumber / daysPer400Years;
    const int dayOfEra = dayNumber % daysPer400Years;
    const int yearOfEra = (dayOfEra - dayOfEra / (daysPer4Years - 1) + dayOfEra / daysPer100Years -
                           dayOfEra / (daysPer400Years - 1)) /
                          365;
    const int dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int shifted = (5 * dayOfYear + 2) / 153;
    fields.day = dayOfYear - (153 * shifted + 2) / 5 + 1;
    fields.month = shifted < 10 ? shifted + 3 : shifted - 9;
    fields.year = era * 400 + yearOfEra + (fields.month <= 2 ? 1 : 0);
}

/// Like the C library's "%d": optional white space, optional sign, digits.
bool ScanInteger(std::wstring_view& text, int& value) noexcept {
    std::size_t end = std::min(text.find_first_not_of(L" \t\n\v\f\r"), text.size());
    if (end < text.size() && (text[end] == L'-' || text[end] == L'+'))
        ++end;
    const std::size_t digits = end;
    while (end < text.size() && text[end] >= L'0' && text[end] <= L'9')
        ++end;
    if (end == digits)
        return false;
    value = QxMisc::ParseInt32(text.substr(0, end));
    text.remove_prefix(end);
    return true;
}

struct Field {
    wchar_t before; ///< separator required before the number; 0: none
    int QxCalendarTime::* value;
};

bool ScanFields(std::wstring_view text, QxCalendarTime& time, std::initializer_list<Field> fields) noexcept {
    for (const Field& field : fields) {
        if (field.before) {
            if (text.empty() || text.front() != field.before)
                return false;
            text.remove_prefix(1);
        }
        if (!ScanInteger(text, time.*field.value))
            return false;
    }
    return true;
}

bool Scan(std::wstring_view text, QxCalendarTime& time) noexcept {
    using T = QxCalendarTime;
    if (!QxMisc::Contains(text, L"-"))
        return ScanFields(text, time, {{0, &T::hour}, {L':', &T::minute}, {L':', &T::second}});
    if (!QxMisc::Contains(text, L":"))
        return ScanFields(text, time, {{0, &T::year}, {L'-', &T::month}, {L'-', &T::day}});
    return ScanFields(text, time,
                      {{0, &T::year},
                       {L'-', &T::month},
                       {L'-', &T::day},
                       {L'T', &T::hour},
                       {L':', &T::minute},
                       {L':', &T::second}});
}

/// Writes a number below 100 with two digits.
wchar_t* WritePair(wchar_t* to, int value) noexcept {
    *to++ = static_cast<wchar_t>(L'0' + value / 10);
    *to++ = static_cast<wchar_t>(L'0' + value % 10);
    return to;
}

/// Writes three numbers below 100, with two digits each and a separator between them.
wchar_t* WriteTriple(wchar_t* to, int first, int second, int third, wchar_t separator) noexcept {
    to = WritePair(to, first);
    *to++ = separator;
    to = WritePair(to, second);
    *to++ = separator;
    return WritePair(to, third);
}

} // namespace

/// The day, and the time of day as a fraction. The sign applies to the day only: -1.25 is 06:00 on
/// 29 December 1899.
struct QxDateTime::DayAndTime {
    std::int32_t day;
    double time;
};

std::uint64_t QxDateTime::Magnitude() const noexcept {
    return m_bits & ~SignBit;
}

bool QxDateTime::IsUnset() const noexcept {
    return !IsValid() || Magnitude() < HalfSecond;
}

bool QxDateTime::IsInCalendar() const noexcept {
    constexpr std::uint64_t lowEnd = BitsOf(1 - FirstDay), highEnd = BitsOf(LastDay + 1);
    return Magnitude() < ((m_bits & SignBit) != 0 ? lowEnd : highEnd);
}

QxDateTime::DayAndTime QxDateTime::Split() const noexcept {
    if (Magnitude() < HalfSecond)
        return {0, 0}; // without loading the value, which may be denormal
    const auto day = static_cast<std::int32_t>(Value());
    return {day, std::fabs(Value() - day)};
}

bool QxDateTime::IsAfter(const QxDateTime& other) const noexcept {
    if (!IsValid() || !other.IsValid() || !IsInCalendar() || !other.IsInCalendar())
        return false;
    const DayAndTime mine = Split(), others = other.Split();
    return mine.day != others.day ? mine.day > others.day : mine.time > others.time;
}

QxDateTime QxDateTime::FromCalendar(const QxCalendarTime& fields) noexcept {
    if (!IsRealTime(fields))
        return QxDateTime(0, Status::Invalid);
    const double day = DayNumber(fields.year, fields.month, fields.day) - DayZero;
    const double time = (fields.hour * 3600 + fields.minute * 60 + fields.second) / double{SecondsPerDay};
    return QxDateTime(day < 0 ? day - time : day + time);
}

bool QxDateTime::ToCalendar(QxCalendarTime& fields) const noexcept {
    if (!IsInCalendar())
        return false;
    auto [day, time] = Split();
    auto seconds = static_cast<int>(std::lround(time * SecondsPerDay));
    if (seconds == SecondsPerDay) {
        seconds = 0;
        ++day;
    }
    if (day > LastDay)
        return false;
    SetDate(fields, day + DayZero);
    fields.hour = seconds / 3600;
    fields.minute = seconds / 60 % 60;
    fields.second = seconds % 60;
    return true;
}

QxDateTime QxDateTime::Parse(std::wstring_view text) {
    QxCalendarTime fields;
    // Day zero, for a text without a date.
    fields.year = 1899;
    fields.month = 12;
    fields.day = 30;
    return Scan(text, fields) ? FromCalendar(fields) : QxDateTime(0, Status::Invalid);
}

QxString QxDateTime::Format(std::int32_t milliseconds) const {
    wchar_t text[MaxLength];
    return std::wstring_view(text, static_cast<std::size_t>(Write(text, milliseconds) - text));
}

wchar_t* QxDateTime::Write(wchar_t* to, std::int32_t milliseconds) const noexcept {
    if (m_status == Status::Null)
        return to;
    QxCalendarTime t;
    if (!IsValid() || !ToCalendar(t)) {
        constexpr std::wstring_view invalid = L"Invalid DateTime";
        to = std::ranges::copy(invalid, to).out;
    } else {
        const bool onDayZero = t.year == 1899 && t.month == 12 && t.day == 30;
        if (onDayZero && t.hour == 0 && t.minute == 0 && t.second == 0)
            return to;
        if (!onDayZero) {
            to = WritePair(to, t.year / 100);
            to = WriteTriple(to, t.year % 100, t.month, t.day, L'-');
            *to++ = L'T';
        }
        to = WriteTriple(to, t.hour, t.minute, t.second, L':');
    }
    if (milliseconds > 0) {
        *to++ = L'.';
        for (std::int32_t bound = 100; bound > 1 && milliseconds < bound; bound /= 10)
            *to++ = L'0';
        to = QxMisc::WriteInt32(milliseconds, to);
    }
    return to;
}
