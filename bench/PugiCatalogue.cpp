#include "Peers.h"

#include <pugixml.hpp>

namespace {

CatalogueEntry ReadEntry(const pugi::xml_node node) {
    return {node.attribute(L"DbId").as_uint(), node.attribute(L"Default").as_bool(), node.text().get()};
}

void ReadPaperSize(const pugi::xml_node node, CatalogueTables& tables) {
    const pugi::xml_node dimensions = node.child(L"PaperDimensions");
    PaperSizeEntry size{node.attribute(L"DbId").as_uint(),
                        node.attribute(L"Default").as_bool(),
                        dimensions.child(L"X").text().as_int(),
                        dimensions.child(L"Y").text().as_int(),
                        dimensions.child(L"XEpsilon").text().as_int(),
                        dimensions.child(L"YEpsilon").text().as_int(),
                        {}};
    const auto index = static_cast<std::uint32_t>(tables.paperSizes.size());
    for (const pugi::xml_node name : node.child(L"PaperNames").children(L"PaperName")) {
        size.names.push_back({name.attribute(L"Default").as_bool(), name.text().get()});
        tables.paperNames.insert_or_assign(size.names.back().name, index);
    }
    tables.paperSizes.push_back(std::move(size));
}

void ReadList(const pugi::xml_node list, const wchar_t* itemName, CatalogueMap& map) {
    for (const pugi::xml_node item : list.children(itemName)) {
        CatalogueEntry entry = ReadEntry(item);
        const QxString name = entry.name;
        map.insert_or_assign(name, std::move(entry));
    }
}

} // namespace

void PugiPeer::ReadCatalogue(std::wstring_view text, CatalogueTables& tables) {
    pugi::xml_document document;
    if (!document.load_buffer(text.data(), text.size() * sizeof(wchar_t), pugi::parse_default,
                              pugi::encoding_wchar))
        return;
    const pugi::xml_node root = document.document_element();
    for (const pugi::xml_node size : root.child(L"PaperSizes").children(L"PaperSize"))
        ReadPaperSize(size, tables);
    for (const pugi::xml_node pair : root.child(L"PageAttributePairs").children(L"PageAttributePair"))
        tables.pageAttributePairs.push_back(
            {ReadEntry(pair.child(L"First")), ReadEntry(pair.child(L"Second"))});
    ReadList(root.child(L"PageAttributes"), L"PageAttribute", tables.pageAttributes);
    ReadList(root.child(L"FinishingAttributes"), L"FinishingAttribute", tables.finishingAttributes);
    ReadList(root.child(L"Pdls"), L"Pdl", tables.pdls);
}
