// Checks the shipped catalogue against the rules of docs/catalogue.md.

#include "CapturedLog.h"
#include "TestData.h"

#include "JobObjects/contents/JobAttributeCatalogueReader.h"
#include "common/text/Text.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <cmath>
#include <set>
#include <sstream>
#include <vector>

namespace {

const std::wstring& ShippedText() {
    static const std::wstring text = ReadTestData("../../JobObjects/JobAttributes.xml");
    return text;
}

const CatalogueTables& Shipped() {
    static const CatalogueTables tables = [] {
        CatalogueTables read;
        REQUIRE(ReadCatalogue(ShippedText(), read));
        return read;
    }();
    return tables;
}

std::size_t CountOf(std::wstring_view part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = ShippedText().find(part, at)) != std::wstring::npos; ++at)
        ++count;
    return count;
}

std::uint32_t PaperCode(const wchar_t* name) {
    const auto found = Shipped().paperNames.find(std::wstring_view(name));
    return found == Shipped().paperNames.end() ? 0 : Shipped().paperSizes[found->second].dbId;
}

/// Every page attribute, including both sides of each pair.
std::vector<CatalogueEntry> AllAttributes() {
    std::vector<CatalogueEntry> all;
    for (const PageAttributePair& pair : Shipped().pageAttributePairs) {
        all.push_back(pair.first);
        all.push_back(pair.second);
    }
    for (const auto& item : Shipped().pageAttributes)
        all.push_back(item.second);
    return all;
}

std::vector<CatalogueEntry> EntriesOf(const CatalogueMap& map) {
    std::vector<CatalogueEntry> all;
    for (const auto& item : map)
        all.push_back(item.second);
    return all;
}

void CheckDistinctBits(const std::vector<CatalogueEntry>& entries) {
    std::uint32_t used = 0;
    for (const CatalogueEntry& entry : entries) {
        INFO("code " << entry.dbId);
        CHECK(entry.dbId != 0);
        CHECK((entry.dbId & (entry.dbId - 1)) == 0);
        CHECK(entry.dbId <= 0x40000000u); // codes are signed
        CHECK((used & entry.dbId) == 0);
        used |= entry.dbId;
    }
}

/// Every paper name, attribute, finishing option and PDL in the file.
std::vector<QxString> AllWords() {
    std::vector<QxString> words;
    for (const PaperSizeEntry& size : Shipped().paperSizes)
        for (const PaperName& name : size.names)
            words.push_back(name.name);
    for (const auto& entries :
         {AllAttributes(), EntriesOf(Shipped().finishingAttributes), EntriesOf(Shipped().pdls)})
        for (const CatalogueEntry& entry : entries)
            words.push_back(entry.name);
    return words;
}

/// Parses the size that ends a standard name such as "na_letter_8.5x11in", in tenths of a millimetre.
bool SizeInName(std::wstring_view name, long& x, long& y) {
    const std::size_t at = name.rfind(L'_');
    if (at == std::wstring_view::npos)
        return false;
    std::wistringstream stream{std::wstring(name.substr(at + 1))};
    double width = 0;
    double height = 0;
    wchar_t cross = 0;
    std::wstring unit;
    if (!(stream >> width >> cross >> height >> unit) || cross != L'x')
        return false;
    const double factor = unit == L"in" ? 254 : 10;
    x = std::lround(width * factor);
    y = std::lround(height * factor);
    return unit == L"in" || unit == L"mm";
}

} // namespace

TEST_CASE("SampleCatalogue_loads_without_a_log_line") {
    CapturedLog log;
    CatalogueTables tables;
    CHECK(ReadCatalogue(ShippedText(), tables));
    CHECK(log.TakeLines().empty());
}

TEST_CASE("SampleCatalogue_has_no_duplicate_names") {
    CHECK(Shipped().paperSizes.size() == CountOf(L"<PaperSize "));
    CHECK(Shipped().paperNames.size() == CountOf(L"<PaperName "));
    CHECK(Shipped().pageAttributes.size() == CountOf(L"<PageAttribute "));
    CHECK(Shipped().finishingAttributes.size() == CountOf(L"<FinishingAttribute "));
    CHECK(Shipped().pdls.size() == CountOf(L"<Pdl "));
    std::set<QxString, LowerCaseLess> words;
    for (const QxString& word : AllWords()) {
        INFO("the " << words.size() << "th word");
        CHECK(words.insert(word).second);
    }
}

TEST_CASE("SampleCatalogue_words_survive_comma_separated_lists") {
    for (const QxString& word : AllWords()) {
        const std::wstring_view text = word;
        INFO(std::string(text.begin(), text.end()));
        REQUIRE_FALSE(text.empty());
        CHECK(text.find(L',') == std::wstring_view::npos);
        CHECK(text.front() != L' ');
        CHECK(text.back() != L' ');
        CHECK_FALSE(QxMisc::EqualsIgnoreCase(text, L"Mono"));
        // The records search for these as substrings, so no other word may contain them.
        for (const std::wstring_view part : {L"Color", L"B&W", L"Duplex"})
            CHECK((text == part || !QxMisc::Contains(text, part)));
    }
}

TEST_CASE("SampleCatalogue_paper_codes_run_from_1_in_file_order") {
    REQUIRE(Shipped().paperSizes.size() > 50);
    for (std::size_t i = 0; i < Shipped().paperSizes.size(); ++i)
        CHECK(Shipped().paperSizes[i].dbId == i + 1);
}

TEST_CASE("SampleCatalogue_each_paper_has_one_default_name_and_portrait_dimensions") {
    for (const PaperSizeEntry& size : Shipped().paperSizes) {
        INFO("paper " << size.dbId);
        CHECK(std::count_if(size.names.begin(), size.names.end(),
                            [](const PaperName& name) { return name.isDefault; }) == 1);
        CHECK(size.x > 0);
        CHECK(size.x <= size.y);
        CHECK((size.xEpsilon > 0 && size.xEpsilon < size.x / 10));
        CHECK((size.yEpsilon > 0 && size.yEpsilon < size.y / 10));
    }
}

TEST_CASE("SampleCatalogue_A4_is_the_only_default_paper") {
    const auto& sizes = Shipped().paperSizes;
    CHECK(std::count_if(sizes.begin(), sizes.end(),
                        [](const PaperSizeEntry& size) { return size.isDefault; }) == 1);
    CHECK(sizes[0].isDefault);
    CHECK(sizes[0].DefaultName() == L"A4");
    CHECK(sizes[0].Dimensions() == L"2100,2970");
}

TEST_CASE("SampleCatalogue_standard_names_agree_with_the_dimensions") {
    int compared = 0;
    for (const PaperSizeEntry& size : Shipped().paperSizes)
        for (const PaperName& name : size.names) {
            long x = 0;
            long y = 0;
            if (!SizeInName(name.name, x, y))
                continue;
            INFO("paper " << size.dbId);
            CHECK(size.x == x);
            CHECK(size.y == y);
            ++compared;
        }
    CHECK(compared > 50);
}

TEST_CASE("SampleCatalogue_similar_names_resolve_to_the_right_sizes") {
    CHECK(PaperCode(L"B4") == PaperCode(L"JIS B4"));
    CHECK(PaperCode(L"B5") == PaperCode(L"B5 (JIS)"));
    CHECK(PaperCode(L"ISO B4") != PaperCode(L"JIS B4"));
    CHECK(PaperCode(L"ISO B5") != PaperCode(L"JIS B5"));
    CHECK(PaperCode(L"Folio") == PaperCode(L"na_foolscap_8.5x13in"));
    CHECK(PaperCode(L"Folio") != PaperCode(L"om_folio_210x330mm"));
    CHECK(PaperCode(L"Ledger") == PaperCode(L"Tabloid"));
    CHECK(PaperCode(L"17x11") == PaperCode(L"11x17"));
    CHECK(PaperCode(L"A4 Rotated") == PaperCode(L"A4"));
    CHECK(PaperCode(L"Super B") != PaperCode(L"B Plus"));
    const std::set<std::uint32_t> sizesOf16K = {
        PaperCode(L"om_16k_195x270mm"), PaperCode(L"om_16k_184x260mm"), PaperCode(L"roc_16k_7.75x10.75in"),
        PaperCode(L"prc_16k_146x215mm")};
    CHECK(sizesOf16K.size() == 4);
    CHECK_FALSE(sizesOf16K.contains(0));
}

TEST_CASE("SampleCatalogue_attribute_and_finishing_codes_are_distinct_bits") {
    CheckDistinctBits(AllAttributes());
    CheckDistinctBits(EntriesOf(Shipped().finishingAttributes));
}

TEST_CASE("SampleCatalogue_pairs_hold_the_words_that_the_records_test_for") {
    const auto& pairs = Shipped().pageAttributePairs;
    REQUIRE(pairs.size() == 2);
    CHECK(pairs[0].first.name == L"Simplex");
    CHECK(pairs[0].second.name == L"Duplex");
    CHECK(pairs[1].first.name == L"B&W");
    CHECK(pairs[1].second.name == L"Color");
    for (const PageAttributePair& pair : pairs)
        CHECK(pair.first.isDefault != pair.second.isDefault);
}

TEST_CASE("SampleCatalogue_pdl_codes_run_from_1_with_one_default") {
    std::set<std::uint32_t> codes;
    int defaults = 0;
    for (const CatalogueEntry& entry : EntriesOf(Shipped().pdls)) {
        codes.insert(entry.dbId);
        defaults += entry.isDefault ? 1 : 0;
    }
    CHECK(defaults == 1);
    REQUIRE_FALSE(codes.empty());
    CHECK(*codes.begin() == 1);
    CHECK(*codes.rbegin() == codes.size());
}

TEST_CASE("SampleCatalogue_stored_codes_never_change") {
    // Databases store these codes. The list only grows, together with the catalogue.
    std::wistringstream list{ReadTestData("stored_codes.txt")};
    std::wstring kind;
    std::uint32_t code = 0;
    std::wstring name;
    std::size_t count = 0;
    const auto attributes = AllAttributes();
    const auto codeIn = [&](const std::vector<CatalogueEntry>& entries) {
        const auto found = std::find_if(entries.begin(), entries.end(), [&](const CatalogueEntry& entry) {
            return entry.name.view() == name;
        });
        return found == entries.end() ? 0 : found->dbId;
    };
    while (list >> kind >> code && std::getline(list >> std::ws, name)) {
        INFO(std::string(name.begin(), name.end()));
        if (kind == L"paper")
            CHECK(PaperCode(name.c_str()) == code);
        else if (kind == L"attribute")
            CHECK(codeIn(attributes) == code);
        else if (kind == L"finishing")
            CHECK(codeIn(EntriesOf(Shipped().finishingAttributes)) == code);
        else
            CHECK(codeIn(EntriesOf(Shipped().pdls)) == code);
        ++count;
    }
    CHECK(count == Shipped().paperSizes.size() + attributes.size() + Shipped().finishingAttributes.size() +
                       Shipped().pdls.size());
}
