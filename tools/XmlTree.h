#pragma once

#include "common/xml/QxXmlParser.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// XML as the library's own parser reads it: names have no prefixes, text is unescaped by its rules, and
/// markup that it skips is absent. Nothing is copied from the parsed text, which may be large.
class XmlTree {
public:
    struct Attribute {
        std::wstring name;
        std::wstring value; ///< unescaped
        bool isRead;        ///< false in single quotes: the library does not see it
        std::size_t offset;
    };

    /// One element, or none. Valid while the tree lives.
    class Element {
    public:
        Element() = default;
        explicit operator bool() const noexcept { return m_index != 0; }
        bool operator==(const Element&) const = default;

        std::wstring_view Name() const noexcept;
        /// Unescaped; empty if there are children.
        std::wstring Text() const;
        /// From the start tag to the end tag.
        std::wstring_view Markup() const noexcept;
        /// What is between the tags, not unescaped; empty if there are children.
        std::wstring_view RawText() const noexcept;
        std::wstring_view StartTag() const noexcept;
        std::size_t Offset() const noexcept { return static_cast<std::size_t>(Position().startTagOpen); }
        /// Quick; true too for white space behind the name.
        bool HasAttributes() const noexcept;
        /// Without namespace declarations.
        std::vector<Attribute> Attributes() const;
        /// An attribute that the library reads.
        std::optional<Attribute> Find(std::wstring_view attribute) const;

        Element Parent() const noexcept { return {m_tree, Position().parent}; }
        Element FirstChild() const noexcept { return {m_tree, Position().firstChild}; }
        Element NextSibling() const noexcept { return {m_tree, Position().nextSibling}; }
        /// The first child with that name.
        Element Child(std::wstring_view name) const noexcept;
        /// The element after this one in the document, children first.
        Element Next() const noexcept;

    private:
        friend class XmlTree;
        Element(const XmlTree* tree, std::int32_t index) noexcept : m_tree(tree), m_index(index) {}
        const QxXmlParser::ElemPos& Position() const noexcept;

        const XmlTree* m_tree = nullptr;
        std::int32_t m_index = 0;
    };
    struct Place {
        std::size_t line;
        std::size_t column;
    };

    /// Copies the text. Returns false and sets Error and ErrorOffset if it does not parse.
    bool Parse(std::wstring_view text);
    /// Frees the text and all elements.
    void Clear();
    const std::wstring& Error() const noexcept { return m_error; }
    std::size_t ErrorOffset() const noexcept { return m_errorOffset; }

    Element Root() const noexcept { return {this, m_parser->Positions()[0].firstChild}; }
    std::size_t Count() const noexcept { return m_parser->PositionCount() - 1; }
    std::wstring_view Document() const noexcept { return m_parser->GetDocument(); }
    /// The offset behind the root element.
    std::size_t RootEnd() const noexcept;

    /// Line and column of an offset, counted from 1, the column in characters.
    Place PlaceOf(std::size_t offset) const;

private:
    /// Selecting an element changes it. Replaced as a whole, because an assigned one keeps its text's memory.
    std::unique_ptr<QxXmlParser> m_parser = std::make_unique<QxXmlParser>();
    std::vector<std::size_t> m_lineStarts;
    std::wstring m_error;
    std::size_t m_errorOffset = 0;
    mutable std::size_t m_columnAt = 0, m_column = 1; ///< the last offset whose column was asked for
};
