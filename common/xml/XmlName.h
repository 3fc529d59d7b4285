#pragma once

#include "QxXmlScan.h"

#include <concepts>
#include <cstddef>
#include <string_view>

/// Name of an element or attribute. Takes a literal's length from its type: measuring it would cost as much
/// as comparing it.
class XmlName : public std::wstring_view {
public:
    template<std::size_t Size>
    constexpr XmlName(const wchar_t (&literal)[Size]) noexcept : std::wstring_view(literal, Size - 1) {}
    constexpr XmlName(std::wstring_view name) noexcept : std::wstring_view(name) {}
};

/// Name to search for. The compiler checks whether a literal is plain; at run time, that would cost as much
/// as comparing the name.
class SoughtName : public std::wstring_view {
public:
    constexpr SoughtName() noexcept : SoughtName(std::wstring_view()) {}
    template<std::size_t Size>
    consteval SoughtName(const wchar_t (&literal)[Size]) noexcept
        : SoughtName(std::wstring_view(literal, Size - 1)) {}
    constexpr SoughtName(std::wstring_view name) noexcept
        : std::wstring_view(name), m_plain(QxXmlScan::IsPlainName(name)) {}
    /// A template, so that literals prefer the constructor above.
    template<std::same_as<const wchar_t*> Pointer>
    constexpr SoughtName(const Pointer& name) noexcept : SoughtName(std::wstring_view(name)) {}

    /// Whether the name is one unquoted token without a namespace prefix.
    constexpr bool IsPlain() const noexcept { return m_plain; }

private:
    bool m_plain;
};
