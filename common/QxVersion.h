#pragma once

#include "common/text/QxString.h"

#include <compare>
#include <cstdint>
#include <string_view>

/// A format version of four components; -1 in build or revision means "not defined".
/// A default-constructed version is invalid.
class QxVersion {
public:
    enum class OnError { Swallow, Throw };

    constexpr QxVersion() noexcept = default;
    /// Stores the four numbers as they are, unchecked.
    constexpr QxVersion(std::int32_t major, std::int32_t minor, std::int32_t build = -1,
                        std::int32_t revision = -1) noexcept
        : m_major(major), m_minor(minor), m_build(build), m_revision(revision) {}
    /// Parses dotted text of two to four components. On an error the version is invalid; with
    /// OnError::Throw the QxException goes on to the caller.
    explicit QxVersion(std::wstring_view text, OnError onError = OnError::Swallow);

    constexpr std::int32_t Major() const noexcept { return m_major; }
    constexpr std::int32_t Minor() const noexcept { return m_minor; }
    constexpr std::int32_t Build() const noexcept { return m_build; }
    constexpr std::int32_t Revision() const noexcept { return m_revision; }

    constexpr bool IsValid() const noexcept {
        return m_major >= 0 && m_minor >= 0 && m_build >= -1 && m_revision >= -1;
    }
    /// Throws a QxException "Version is not valid." when the version is invalid; logs nothing.
    void CheckValid() const;

    /// The first fieldCount components; "<invalid>" for an invalid version; throws a QxException when
    /// fieldCount is above 4 or asks for an undefined component.
    QxString AsString(std::uint16_t fieldCount) const;
    /// As many components as are defined: two, three or four.
    QxString AsString() const;

    /// -1, 0 or 1, by component and numerically; an undefined component sorts below 0.
    constexpr int Compare(const QxVersion& other) const noexcept {
        const auto order = *this <=> other;
        return order < 0 ? -1 : order > 0 ? 1 : 0;
    }
    friend constexpr auto operator<=>(const QxVersion&, const QxVersion&) noexcept = default;

    /// Converts one component; logs and throws a QxException for anything but decimal digits. The base is
    /// taken from the text, so a leading 0 means octal: peers depend on that quirk.
    static std::int32_t ParseVersionComponent(std::wstring_view text);

private:
    std::int32_t m_major = -1;
    std::int32_t m_minor = -1;
    std::int32_t m_build = -1;
    std::int32_t m_revision = -1;
};
