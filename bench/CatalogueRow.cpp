#include "Peers.h"
#include "Rows.h"

#include "JobObjects/contents/JobAttributeCatalogueReader.h"
#include "common/text/TextEncoding.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

std::wstring ReadFile() {
    std::ifstream file(CATALOGUE_FILE, std::ios::binary);
    Require(file.is_open(), "the catalogue's file");
    return TextEncoding::Decode(std::string{std::istreambuf_iterator<char>(file), {}});
}

bool Same(const CatalogueEntry& a, const CatalogueEntry& b) {
    return a.dbId == b.dbId && a.isDefault == b.isDefault && a.name == b.name;
}

bool Same(const CatalogueMap& a, const CatalogueMap& b) {
    return !a.empty() && std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& x, const auto& y) {
        return x.first == y.first && Same(x.second, y.second);
    });
}

bool Same(const PaperSizeEntry& a, const PaperSizeEntry& b) {
    return a.dbId == b.dbId && a.isDefault == b.isDefault && a.x == b.x && a.y == b.y &&
           a.xEpsilon == b.xEpsilon && a.yEpsilon == b.yEpsilon &&
           std::equal(a.names.begin(), a.names.end(), b.names.begin(), b.names.end(),
                      [](const PaperName& x, const PaperName& y) {
                          return x.isDefault == y.isDefault && x.name == y.name;
                      });
}

bool Same(const CatalogueTables& a, const CatalogueTables& b) {
    return !a.paperSizes.empty() && a.paperNames == b.paperNames &&
           std::equal(a.paperSizes.begin(), a.paperSizes.end(), b.paperSizes.begin(), b.paperSizes.end(),
                      [](const PaperSizeEntry& x, const PaperSizeEntry& y) { return Same(x, y); }) &&
           std::equal(a.pageAttributePairs.begin(), a.pageAttributePairs.end(), b.pageAttributePairs.begin(),
                      b.pageAttributePairs.end(),
                      [](const PageAttributePair& x, const PageAttributePair& y) {
                          return Same(x.first, y.first) && Same(x.second, y.second);
                      }) &&
           Same(a.pageAttributes, b.pageAttributes) && Same(a.finishingAttributes, b.finishingAttributes) &&
           Same(a.pdls, b.pdls);
}

} // namespace

void AddCatalogueRow(Table& table) {
    const std::wstring text = ReadFile();
    CatalogueTables ours;
    CatalogueTables theirs;
    Require(ReadCatalogue(text, ours), "the catalogue");
    PugiPeer::ReadCatalogue(text, theirs);
    Require(Same(ours, theirs), "the catalogue's tables differ");
    table.Time("load the catalogue",
               {{"reader",
                 [&text] {
                     CatalogueTables tables;
                     Use(ReadCatalogue(text, tables));
                 }},
                {"pugixml parse and read",
                 [&text] {
                     CatalogueTables tables;
                     PugiPeer::ReadCatalogue(text, tables);
                     Use(tables.paperSizes.size());
                 }}},
               {{"pugixml parse and read", 1}});
}
