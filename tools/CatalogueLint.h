#pragma once

#include "Findings.h"
#include "XmlTree.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Finds mistakes in a catalogue. Searches like the library, which never looks back: each search starts after
/// the last match.
class CatalogueLint {
public:
    CatalogueLint(const XmlTree& tree, Findings& findings) : m_tree(tree), m_findings(findings) {}

    void Run();
    /// The numbers of entries, as text.
    std::wstring Summary() const;

private:
    using Element = XmlTree::Element;

    /// The children of one element, searched in the library's order.
    class Children {
    public:
        Children(CatalogueLint& lint, Element parent);
        /// The next child with that name after the last match; none if there is none.
        Element Next(std::wstring_view name);
        /// The same, but a missing child is an error. A misplaced one is an error too, and is returned.
        Element Need(std::wstring_view name);
        /// Warns about the children that the library skips.
        void ReportRest();

    private:
        CatalogueLint& m_lint;
        Element m_parent;
        std::vector<Element> m_children;
        std::vector<bool> m_found;
        std::size_t m_next = 0;
    };

    struct Word {
        std::wstring text;
        const wchar_t* section;
        std::size_t offset;
    };

    void PaperSizes(Element section);
    void PaperSize(Element size, std::int64_t& expectedCode);
    void Dimensions(Element dimensions);
    void PaperNames(Element names);
    void Pairs(Element section);
    void List(Element section, const wchar_t* item, const wchar_t* sectionName);
    void Pdls(Element section);

    std::optional<std::int64_t> Number(Element element, const std::wstring& text, const std::wstring& what);
    std::optional<std::int64_t> Code(Element element);
    void BitCode(Element element, std::map<std::int64_t, std::size_t>& used);
    bool IsDefault(Element element);
    void AddWord(Element element, const wchar_t* section);
    void CheckPageAttribute(Element element);
    void CheckOneDefault(std::size_t count, Element parent, const std::wstring& what);
    std::wstring Line(std::size_t offset) const;

    const XmlTree& m_tree;
    Findings& m_findings;
    std::map<std::wstring, Word> m_words; ///< by lower-case text
    std::map<std::int64_t, std::size_t> m_paperCodes, m_pageBits, m_finishingBits;
    std::size_t m_paperSizes = 0, m_paperNames = 0, m_pageWords = 0, m_finishingWords = 0, m_pdls = 0;
};
