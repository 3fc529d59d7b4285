// Input: a catalogue file. It loads or logs a reason; a loaded catalogue is consistent.

#include "Fuzzing.h"

#include "JobObjects/contents/CatalogueFile.h"
#include "JobObjects/contents/JobAttributeCatalogue.h"
#include "JobObjects/contents/JobAttributeCatalogueReader.h"
#include "common/text/TextEncoding.h"
#include "common/log/QxLogger.h"

#include <algorithm>

using Fuzzing::Require;

namespace {

std::wstring fileText;
bool loggedReason = false;

/// Detects a line with the reason of a failed load.
class ReasonSink final : public QxLog {
public:
    ReasonSink() : QxLog(L"reason") {}
    void Write(std::wstring_view text) noexcept override {
        if (text == L"Job attributes xml file is corrupt.\n" ||
            (text.starts_with(L"Missing '") && text.ends_with(L"' xml element.\n")))
            loggedReason = true;
    }
};

void StartLog() {
    QxLogger::Instance().Change([](LogConfiguration& configuration) {
        configuration.settings.enabled = true;
        configuration.sinks = {{std::make_shared<ReasonSink>()}};
    });
}

void CheckDecoded(std::string_view bytes) {
    Require(fileText.size() <= bytes.size(), "more characters than bytes");
    if (sizeof(wchar_t) == 4)
        Require(std::none_of(fileText.begin(), fileText.end(),
                             [](wchar_t c) {
                                 const auto code = static_cast<std::uint32_t>(c);
                                 return code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF);
                             }),
                "an invalid character");
}

/// A later element replaces the entry of an earlier one that differs only in case.
bool IsSameWord(std::wstring_view a, std::wstring_view b) {
    return !LowerCaseLess()(a, b) && !LowerCaseLess()(b, a);
}

void CheckMap(const CatalogueMap& map) {
    for (const auto& [name, entry] : map)
        Require(map.find(name.view()) != map.end() && IsSameWord(entry.name, name),
                "an entry is not found by its name");
}

void CheckTables(const CatalogueTables& tables) {
    for (const auto& [name, index] : tables.paperNames) {
        Require(index < tables.paperSizes.size(), "a paper name without a size");
        const auto& names = tables.paperSizes[index].names;
        const std::wstring_view sought = name;
        Require(std::any_of(names.begin(), names.end(),
                            [&](const auto& each) { return IsSameWord(each.name, sought); }),
                "a paper name with another paper's size");
    }
    for (const PaperSizeEntry& size : tables.paperSizes)
        Require(!size.names.empty(), "a paper size without a name");
    CheckMap(tables.pageAttributes);
    CheckMap(tables.finishingAttributes);
    CheckMap(tables.pdls);
}

/// Each table's names and codes convert to each other.
void CheckLookUps(JobAttributeCatalogue& catalogue, const CatalogueTables& tables) {
    for (const auto& [name, index] : tables.paperNames) {
        const std::uint32_t dbId = tables.paperSizes[index].dbId;
        Require(catalogue.PaperDbIdFromName(name) == dbId, "wrong code for a paper");
        JobAttributeCatalogue::Paper paper;
        Require(catalogue.PaperFromDbId(dbId, paper) == (dbId != 0 && dbId <= tables.paperSizes.size()),
                "a paper's code");
    }
    for (const auto& [name, entry] : tables.pdls) {
        Require(catalogue.PdlDbIdFromName(name) == entry.dbId, "wrong code for a PDL");
        const QxString other = catalogue.PdlNameFromDbId(entry.dbId);
        Require(tables.pdls.at(other).dbId == entry.dbId, "wrong PDL for a code");
    }
    catalogue.AttributeNamesFromMask(0xFFFFFFFF);
    catalogue.FinishingNamesFromMask(0xFFFFFFFF);
    for (const bool defaults : {false, true}) {
        AttributeText::Words words = {L"Duplex", L"A4", L"Color", L"Staple", L"x"};
        catalogue.PaperFromAttributeWords(words);
        catalogue.JobOptionsFromAttributeWords(words);
        catalogue.NormalizePageAttributes(words, defaults);
        Require(words.size() <= 5, "more words than before");
    }
}

} // namespace

bool ReadCatalogueFile(std::wstring& text) {
    text = fileText;
    return true;
}

void RunInput(std::string_view bytes) {
    static const bool started = (StartLog(), true);
    Require(started, "the log is not started");
    fileText = TextEncoding::Decode(bytes);
    CheckDecoded(bytes);
    CatalogueTables tables;
    loggedReason = false;
    const bool loaded = ReadCatalogue(fileText, tables);
    Require(loaded || loggedReason, "a failure without a reason");
    CheckTables(tables);
    JobAttributeCatalogue catalogue;
    if (loaded)
        CheckLookUps(catalogue, tables);
    else
        Require(catalogue.PdlNameFromDbId(0xFFFFFFFF) == catalogue.DefaultEntryName(&CatalogueTables::pdls),
                "an unknown code does not return the default");
}
