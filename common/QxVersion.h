#pragma once

#include "common/text/QxString.h"

#include <compare>
#include <cstdint>
#include <string_view>

/// Version of an XML form. In build and revision -1 means undefined. A default-constructed version is
/// invalid.
class QxVersion {
public:
    enum class OnError { Swallow, Throw };

    constexpr QxVersion() noexcept = default;
    /// Does not check the numbers.
    constexpr QxVersion(std::int32_t major, std::int32_t minor, std::int32_t build = -1,
                        std::int32_t revision = -1) noexcept
        : m_major(major), m_minor(minor), m_build(build), m_revision(revision) {}
    /// Parses two to four dotted components. An error is logged and makes the version invalid, or throws a
    /// QxException with OnError::Throw.
    explicit QxVersion(std::wstring_view text, OnError onError = OnError::Swallow);

    constexpr bool IsValid() const noexcept {
        return m_major >= 0 && m_minor >= 0 && m_build >= -1 && m_revision >= -1;
    }
    /// Throws a QxException if the version is invalid; logs nothing.
    void CheckValid() const;

    /// The first fieldCount components; "<invalid>" for an invalid version. Throws a QxException if
    /// fieldCount is above 4 or includes an undefined component.
    std::wstring AsString(std::uint16_t fieldCount) const;
    /// All defined components.
    std::wstring AsString() const;

    /// Contract. -1, 0 or 1; compares numerically, undefined below 0.
    constexpr int Compare(const QxVersion& other) const noexcept {
        const auto order = *this <=> other;
        return order < 0 ? -1 : order > 0 ? 1 : 0;
    }
    friend constexpr auto operator<=>(const QxVersion&, const QxVersion&) noexcept = default;

    /// Parses one component; logs and throws a QxException unless it is all decimal digits. A leading 0 means
    /// octal: peers depend on that quirk.
    static std::int32_t ParseVersionComponent(std::wstring_view text);

private:
    std::int32_t m_major = -1;
    std::int32_t m_minor = -1;
    std::int32_t m_build = -1;
    std::int32_t m_revision = -1;
};
