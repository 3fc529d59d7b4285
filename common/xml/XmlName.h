#pragma once

#include "QxXmlScan.h"

#include <concepts>
#include <cstddef>
#include <string_view>

/// Name of an element or attribute. The compiler measures and checks a literal; at run time, that would cost
/// as much as comparing the name.
class XmlName : public std::wstring_view {
public:
    constexpr XmlName() noexcept : XmlName(std::wstring_view()) {}
    template<std::size_t Size>
    consteval XmlName(const wchar_t (&literal)[Size]) noexcept
        : XmlName(std::wstring_view(literal, Size - 1)) {}
    constexpr XmlName(std::wstring_view name) noexcept
        : std::wstring_view(name), m_plain(QxXmlScan::IsPlainName(name)) {}
    /// A template, so that literals prefer the constructor above.
    template<std::same_as<const wchar_t*> Pointer>
    constexpr XmlName(const Pointer& name) noexcept : XmlName(std::wstring_view(name)) {}

    /// Whether the name is one unquoted token without a namespace prefix.
    constexpr bool IsPlain() const noexcept { return m_plain; }

private:
    bool m_plain;
};
