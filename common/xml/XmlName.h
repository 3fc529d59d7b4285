#pragma once

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
