#pragma once

#include "common/text/QxString.h"

#include <bit>
#include <cstdint>
#include <string_view>

/// Broken-down calendar time, local or UTC.
struct QxCalendarTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
};

/// An Automation date (days since 30 December 1899, the fraction is the time of day) with a status, without a
/// time zone. Text has a resolution of one second; milliseconds are a separate number.
///
/// The value may be any 64 bits. In a host that unmasks floating-point exceptions, loading or comparing a NaN
/// raises one, so the value is stored as bits and loaded only if it is within the calendar.
class QxDateTime {
public:
    /// Null is contract: no record uses it.
    enum class Status { Valid, Invalid, Null };

    /// The zero date, valid.
    constexpr QxDateTime() noexcept = default;
    /// By reference: does not load the value.
    constexpr explicit QxDateTime(const double& value, Status status = Status::Valid) noexcept
        : m_bits(std::bit_cast<std::uint64_t>(value)), m_status(status) {}

    constexpr std::uint64_t Bits() const noexcept { return m_bits; }
    constexpr double Value() const noexcept { return std::bit_cast<double>(m_bits); }
    constexpr bool IsValid() const noexcept { return m_status == Status::Valid; }

    /// Never set: not valid, or within half a second of zero.
    bool IsUnset() const noexcept;
    /// Whether this is the later point in time. False unless both are valid and within the calendar.
    bool IsAfter(const QxDateTime& other) const noexcept;

    /// The zero date with status invalid unless the fields are a real time of the years 100 to 9999.
    static QxDateTime FromCalendar(const QxCalendarTime& fields) noexcept;
    /// The time, rounded to the nearest second. False if it is outside the calendar.
    bool ToCalendar(QxCalendarTime& fields) const noexcept;

    /// Parses "Y-M-DTh:m:s", "Y-M-D" or "h:m:s" and ignores a fraction of a second. Anything else gives the
    /// zero date with status invalid.
    static QxDateTime Parse(std::wstring_view text);
    /// "%Y-%m-%dT%H:%M:%S"; only the time on day zero; empty for the zero date and null; "Invalid DateTime"
    /// for an invalid value.
    ///
    /// With milliseconds above 0, ".%03d" follows any of these texts but the empty one.
    QxString Format(std::int32_t milliseconds = 0) const;
    /// The same to a place for MaxLength characters; returns the end of the text.
    static constexpr std::size_t MaxLength = 30;
    wchar_t* Write(wchar_t* to, std::int32_t milliseconds) const noexcept;

private:
    struct DayAndTime;

    /// The bits of the absolute value. They sort like the numbers, infinity and NaN last.
    std::uint64_t Magnitude() const noexcept;
    bool IsInCalendar() const noexcept;
    /// Requires IsInCalendar.
    DayAndTime Split() const noexcept;

    std::uint64_t m_bits = 0;
    Status m_status = Status::Valid;
};
