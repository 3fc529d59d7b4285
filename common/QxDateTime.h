#pragma once

#include "common/text/QxString.h"

#include <bit>
#include <cstdint>
#include <string_view>

/// Broken-down calendar time, local or UTC; the date-time itself carries no zone.
struct QxCalendarTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// An Automation date (days since 30 December 1899 00:00, the fraction is the time of day) with a status.
/// Resolution is one second in text; milliseconds travel beside it as a separate number.
///
/// The value may be any 64 bits, and some hosts unmask floating-point exceptions: there, loading or comparing
/// a NaN raises one. So the value is kept as bits and becomes a number only when it is a time of the
/// calendar.
class QxDateTime {
public:
    enum class Status { Valid, Invalid, Null };

    /// The zero date, valid.
    constexpr QxDateTime() noexcept = default;
    /// By reference, so that the value is not loaded.
    constexpr explicit QxDateTime(const double& value, Status status = Status::Valid) noexcept
        : m_bits(std::bit_cast<std::uint64_t>(value)), m_status(status) {}

    constexpr std::uint64_t Bits() const noexcept { return m_bits; }
    constexpr double Value() const noexcept { return std::bit_cast<double>(m_bits); }
    constexpr Status GetStatus() const noexcept { return m_status; }
    constexpr bool IsValid() const noexcept { return m_status == Status::Valid; }

    /// Not valid, or within half a second of zero: a time that was never set.
    bool IsUnset() const noexcept;
    /// Whether this is the later of two points in time. False unless both are valid and inside the calendar.
    bool IsAfter(const QxDateTime& other) const noexcept;

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
    struct DayAndTime;

    /// The bits of the absolute value: their order is that of the numbers, with infinity and NaN at the end.
    std::uint64_t Magnitude() const noexcept;
    bool IsInCalendar() const noexcept;
    /// Of a value inside the calendar.
    DayAndTime Split() const noexcept;

    std::uint64_t m_bits = 0; // of the number 0
    Status m_status = Status::Valid;
};
