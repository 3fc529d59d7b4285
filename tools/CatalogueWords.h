#pragma once

#include "XmlTree.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// Converts A to Z only, as the library does when it compares words.
std::wstring LowerCase(std::wstring text);

/// A paper size of a catalogue with its default name; the dimensions are texts.
struct CataloguePaper {
    std::int64_t code;
    std::wstring name, width, height;
};
std::vector<CataloguePaper> PapersOf(const XmlTree& catalogue);
/// The number in an attribute DbId; 0 if it is missing.
std::int64_t CatalogueCode(XmlTree::Element element);

/// The words of a catalogue, by their use in records.
class CatalogueWords {
public:
    enum class Use { PaperSize, PageAttributes, Finishing, Pdl };

    /// Returns false if the file cannot be read.
    bool Load(const std::wstring& path);

    /// The words of a record's text that the catalogue does not define. Paper sizes and languages are one
    /// word, the others lists.
    std::vector<std::wstring> Unknown(Use use, std::wstring_view text) const;

private:
    using Words = std::unordered_set<std::wstring>;

    Words m_paperSizes, m_pageAttributes, m_finishing, m_pdls;
};
