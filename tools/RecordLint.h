#pragma once

#include "CatalogueWords.h"
#include "Findings.h"
#include "XmlTree.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_map>

/// Finds what the library reads without a complaint and without a change, but probably not as meant: unknown
/// words, references that it does not decode, markup that it ignores, versions that it does not know.
class RecordLint {
public:
    RecordLint(const XmlTree& tree, Findings& findings) : m_tree(tree), m_findings(findings) {}

    /// `words` is null if there is no catalogue.
    void Run(const CatalogueWords* words);

private:
    using Element = XmlTree::Element;
    struct Unknown {
        std::size_t offset, count;
    };

    void TextAround();
    void CheckWords(const CatalogueWords& words, Element element);
    void CheckReferences(Element element);
    void CheckVersion(Element element);
    void ReportReference(std::wstring_view text, std::size_t offset);
    void ReportUnknownWords();

    const XmlTree& m_tree;
    Findings& m_findings;
    std::map<std::wstring, Unknown> m_unknown;     ///< by message
    std::map<std::wstring, std::wstring> m_newest; ///< the newest version of a class
};
