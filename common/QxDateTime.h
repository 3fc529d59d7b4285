#pragma once

#include "QxString.h"

#include <string_view>

/// Broken-down calendar time, local or UTC; the date-time itself carries no zone.
struct QxCalendarTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// An Automation date (days since 30 December 1899 00:00, the fraction is the time of day) with a status.
/// Resolution is one second in text; milliseconds travel beside it as a separate number.
class QxDateTime {
public:
    enum class Status { Valid, Invalid, Null };

    /// The zero date, valid.
    constexpr QxDateTime() noexcept = default;
    constexpr explicit QxDateTime(double value, Status status = Status::Valid) noexcept
        : m_value(value), m_status(status) {}

    constexpr double Value() const noexcept { return m_value; }
    constexpr Status GetStatus() const noexcept { return m_status; }
    constexpr bool IsValid() const noexcept { return m_status == Status::Valid; }

    /// Not valid, or within half a second of zero: a time that was never set.
    bool IsUnset() const noexcept;

    /// Valid only when the fields name a real calendar time of the years 100 to 9999; otherwise the zero
    /// date with status invalid.
    static QxDateTime FromCalendar(const QxCalendarTime& fields) noexcept;
    /// False when the value lies outside the calendar. Rounds to the nearest second.
    bool ToCalendar(QxCalendarTime& fields) const noexcept;

    /// Parses "Y-M-DTh:m:s", "Y-M-D" or "h:m:s"; anything else is the zero date with status invalid.
    /// A trailing fraction of a second is ignored.
    static QxDateTime Parse(std::wstring_view text);
    /// "%Y-%m-%dT%H:%M:%S"; time only on day zero; empty for the zero date and for null;
    /// "Invalid DateTime" for an invalid value.
    QxString Format() const;
    /// As Format, with ".%03d" appended when the text is not empty and milliseconds is above 0.
    QxString Format(long milliseconds) const;

private:
    double m_value = 0;
    Status m_status = Status::Valid;
};
