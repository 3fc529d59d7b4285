#pragma once

#include <array>
#include <cstddef>

// The source of a reported failure, such as "CPrintJobImpl::put_Xml". Log readers match these texts.

/// A string literal as a template argument.
template<std::size_t Size>
struct NameLiteral {
    consteval NameLiteral(const wchar_t (&literal)[Size]) {
        for (std::size_t i = 0; i < Size; ++i)
            text[i] = literal[i];
    }
    static constexpr std::size_t Length = Size - 1;

    wchar_t text[Size]{};
};

/// "Class::Method", joined at compile time.
template<NameLiteral Class, NameLiteral Method>
inline constexpr auto MethodName = [] {
    std::array<wchar_t, Class.Length + 2 + Method.Length + 1> name{};
    std::size_t end = 0;
    for (std::size_t i = 0; i < Class.Length; ++i)
        name[end++] = Class.text[i];
    name[end++] = L':';
    name[end++] = L':';
    for (std::size_t i = 0; i < Method.Length; ++i)
        name[end++] = Method.text[i];
    return name;
}();

/// Requires Self, the implementation class, and its NameLiteral Self::ClassName.
#define METHOD_SOURCE(Method) (MethodName<Self::ClassName, L"" #Method>.data())
