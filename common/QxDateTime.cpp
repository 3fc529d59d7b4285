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
    int QxCalendarTime::*value;
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

/// Formats a date-time into a fixed buffer; the longest has 19 characters, a dot and the milliseconds.
class FieldWriter {
public:
    /// Pads with zeros to the width.
    FieldWriter& Number(std::int32_t value, std::size_t width) noexcept {
        QxMisc::Int32Digits buffer;
        const std::wstring_view digits = QxMisc::FormatInt32(value, buffer);
        m_end = std::fill_n(m_end, width - std::min(width, digits.size()), L'0');
        m_end = std::copy(digits.begin(), digits.end(), m_end);
        return *this;
    }
    FieldWriter& Character(wchar_t character) noexcept {
        *m_end++ = character;
        return *this;
    }
    FieldWriter& Text(std::wstring_view text) noexcept {
        m_end = std::copy(text.begin(), text.end(), m_end);
        return *this;
    }
    std::wstring_view View() const noexcept {
        return std::wstring_view(m_text, static_cast<std::size_t>(m_end - m_text));
    }

private:
    wchar_t m_text[40];
    wchar_t* m_end = m_text;
};

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

QxString QxDateTime::Format() const {
    return Format(0);
}

QxString QxDateTime::Format(long milliseconds) const {
    if (m_status == Status::Null)
        return {};
    FieldWriter text;
    QxCalendarTime t;
    if (!IsValid() || !ToCalendar(t)) {
        text.Text(L"Invalid DateTime");
    } else {
        const bool onDayZero = t.year == 1899 && t.month == 12 && t.day == 30;
        if (onDayZero && t.hour == 0 && t.minute == 0 && t.second == 0)
            return {};
        if (!onDayZero)
            text.Number(t.year, 4)
                .Character(L'-')
                .Number(t.month, 2)
                .Character(L'-')
                .Number(t.day, 2)
                .Character(L'T');
        text.Number(t.hour, 2).Character(L':').Number(t.minute, 2).Character(L':').Number(t.second, 2);
    }
    if (milliseconds > 0)
        text.Character(L'.').Number(static_cast<std::int32_t>(milliseconds), 3);
    return text.View();
}
