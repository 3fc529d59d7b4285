#include "JobAttributeCatalogueReader.h"

#include "common/xml/QxXmlParser.h"
#include "common/log/QxLogger.h"

#include <utility>

// The reader never looks back: sections and children out of order count as missing.

namespace {

std::uint32_t ReadDbId(const QxXmlParser& parser) {
    return static_cast<std::uint32_t>(parser.GetChildAttributeNumber(L"DbId"));
}

bool ReadDefault(const QxXmlParser& parser) {
    return parser.GetChildAttributeFlag(L"Default");
}

/// The number in the next child with the name; 0 if none.
std::int32_t ReadNextNumber(QxXmlParser& parser, std::wstring_view name) {
    return parser.FindChildElement(name) ? parser.GetChildNumber() : 0;
}

void ReadPaperDimensions(QxXmlParser& parser, PaperSizeEntry& size) {
    if (!parser.FindChildElement(L"PaperDimensions")) {
        LogError(L"Missing 'PaperDimensions' xml element.");
        return;
    }
    parser.IntoElement();
    size.x = ReadNextNumber(parser, L"X");
    size.y = ReadNextNumber(parser, L"Y");
    size.xEpsilon = ReadNextNumber(parser, L"XEpsilon");
    size.yEpsilon = ReadNextNumber(parser, L"YEpsilon");
    parser.OutOfElement();
}

void ReadPaperNames(QxXmlParser& parser, PaperSizeEntry& size, PaperNameMap& names, std::uint32_t index) {
    if (!parser.FindChildElement(L"PaperNames")) {
        LogError(L"Missing 'PaperNames' xml element.");
        return;
    }
    parser.IntoElement();
    while (parser.FindChildElement(L"PaperName")) {
        size.names.push_back({ReadDefault(parser), parser.GetChildData()});
        names.insert_or_assign(size.names.back().name, index);
    }
    parser.OutOfElement();
}

bool ReadPaperSizes(QxXmlParser& parser, CatalogueTables& tables) {
    tables.paperNames.clear();
    tables.paperSizes.clear();
    if (!parser.FindChildElement(L"PaperSizes")) {
        LogError(L"Missing 'PaperSizes' xml element.");
        return false;
    }
    // Local until complete: after an allocation failure no name may point beyond the sizes.
    PaperNameMap names;
    std::vector<PaperSizeEntry> sizes;
    parser.IntoElement();
    while (parser.FindChildElement(L"PaperSize")) {
        PaperSizeEntry size;
        size.dbId = ReadDbId(parser);
        size.isDefault = ReadDefault(parser);
        parser.IntoElement();
        ReadPaperDimensions(parser, size);
        ReadPaperNames(parser, size, names, static_cast<std::uint32_t>(sizes.size()));
        parser.OutOfElement();
        if (!size.names.empty())
            sizes.push_back(std::move(size));
    }
    parser.OutOfElement();
    tables.paperNames = std::move(names);
    tables.paperSizes = std::move(sizes);
    return true;
}

/// One side of a pair. If the element is missing, the text is empty and the attributes come from the current
/// child: a missing second side gets those of the first.
CatalogueEntry ReadPairSide(QxXmlParser& parser, std::wstring_view name) {
    CatalogueEntry entry;
    if (parser.FindChildElement(name))
        entry.name = parser.GetChildData();
    entry.dbId = ReadDbId(parser);
    entry.isDefault = ReadDefault(parser);
    return entry;
}

bool ReadPageAttributePairs(QxXmlParser& parser, std::vector<PageAttributePair>& pairs) {
    pairs.clear();
    if (!parser.FindChildElement(L"PageAttributePairs")) {
        LogError(L"Missing 'PageAttributePairs' xml element.");
        return false;
    }
    parser.IntoElement();
    while (parser.FindChildElement(L"PageAttributePair")) {
        parser.IntoElement();
        PageAttributePair pair;
        pair.first = ReadPairSide(parser, L"First");
        pair.second = ReadPairSide(parser, L"Second");
        parser.OutOfElement();
        pairs.push_back(std::move(pair));
    }
    parser.OutOfElement();
    return true;
}

bool ReadList(QxXmlParser& parser, const wchar_t* listName, std::wstring_view itemName, CatalogueMap& map) {
    map.clear();
    if (!parser.FindChildElement(listName)) {
        LogError(L"Missing '%ls' xml element.", listName);
        return false;
    }
    parser.IntoElement();
    while (parser.FindChildElement(itemName)) {
        CatalogueEntry entry{ReadDbId(parser), ReadDefault(parser), parser.GetChildData()};
        const QxString name = entry.name;
        map.insert_or_assign(name, std::move(entry));
    }
    parser.OutOfElement();
    return true;
}

} // namespace

bool ReadCatalogue(std::wstring_view text, CatalogueTables& tables) {
    QxXmlParser parser;
    if (!parser.SetDocument(text)) {
        LogError(L"Job attributes xml file is corrupt.");
        return false;
    }
    return ReadPaperSizes(parser, tables) && ReadPageAttributePairs(parser, tables.pageAttributePairs) &&
           ReadList(parser, L"PageAttributes", L"PageAttribute", tables.pageAttributes) &&
           ReadList(parser, L"FinishingAttributes", L"FinishingAttribute", tables.finishingAttributes) &&
           ReadList(parser, L"Pdls", L"Pdl", tables.pdls);
}
