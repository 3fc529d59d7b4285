#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// XML as a tree, parsed by the library's own parser: names have no prefixes, text is unescaped by its rules,
/// and markup that it skips is absent.
class XmlTree {
public:
    struct Attribute {
        std::wstring name;
        std::wstring value; ///< unescaped
        bool isRead;        ///< false in single quotes: the library does not see it
        std::size_t offset;
    };
    struct Element {
        std::wstring name;
        std::wstring text; ///< empty if there are children
        std::size_t offset;
        std::size_t parent;                ///< the root is its own parent
        std::vector<Attribute> attributes; ///< without namespace declarations
        std::vector<std::size_t> children;

        const Attribute* Find(std::wstring_view attribute) const noexcept;
    };
    struct Place {
        std::size_t line;
        std::size_t column;
    };

    /// Returns false and sets Error if the text does not parse.
    bool Parse(std::wstring_view text);
    const std::wstring& Error() const noexcept { return m_error; }

    static constexpr std::size_t Root = 0;
    const Element& operator[](std::size_t element) const { return m_elements[element]; }
    std::size_t Count() const noexcept { return m_elements.size(); }

    /// Line and column of an offset, counted from 1.
    Place PlaceOf(std::size_t offset) const noexcept;

private:
    std::vector<Element> m_elements;
    std::vector<std::size_t> m_lineStarts;
    std::wstring m_error;
};
