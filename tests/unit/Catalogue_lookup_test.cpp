#include "CatalogueStub.h"
#include "CapturedLog.h"

#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <catch2/catch.hpp>

using Lines = std::vector<std::wstring>;

using AttributeText::Words;

namespace {

/// A loaded catalogue, by default of the stub's vocabulary, and the log since the load.
struct Loaded {
    Loaded() { catalogue.EnsureLoaded(); }
    explicit Loaded(const std::wstring& text) {
        CatalogueStub file(text);
        catalogue.EnsureLoaded();
    }

    JobAttributeCatalogue catalogue;
    CapturedLog log;
};

/// The default vocabulary with one piece replaced.
std::wstring Changed(const std::wstring& what, const std::wstring& with) {
    std::wstring text = CatalogueStub::DefaultText();
    const auto at = text.find(what);
    REQUIRE(at != std::wstring::npos);
    return text.replace(at, what.size(), with);
}

} // namespace

TEST_CASE("SplitWords_skips_empty_pieces_and_renames_Mono") {
    CHECK(AttributeText::Split(L"") == Words{});
    CHECK(AttributeText::Split(L",,,") == Words{});
    CHECK(AttributeText::Split(L",A4,,Duplex,") == Words{L"A4", L"Duplex"});
    CHECK(AttributeText::Split(L"Mono,mono,MONO, Mono") == Words{L"B&W", L"mono", L"MONO", L" Mono"});
}

TEST_CASE("Without_replaces_from_left_to_right_in_one_pass_each") {
    CHECK(AttributeText::Without(L"A,B&W,Color,C", {L"B&W", L"Color"}) == L"A,,C");
    CHECK(AttributeText::Without(L"B&W,A", {L"B&W", L"Color"}) == L",A");
    CHECK(AttributeText::Without(L"HighColor,B&Wx", {L"B&W", L"Color"}) == L"High,x");
    CHECK(AttributeText::Without(L"CoB&Wlor", {L"B&W", L"Color"}) == L"");
    CHECK(AttributeText::Without(L"CoB&Wlor", {L"Color", L"B&W"}) == L"Color");
    CHECK(AttributeText::Without(L"color,b&w", {L"B&W", L"Color"}) == L"color,b&w");
}

TEST_CASE("PaperDbIdFromName_ignores_case_and_finds_every_name") {
    Loaded t;
    CHECK(t.catalogue.PaperDbIdFromName(L"A4") == 1);
    CHECK(t.catalogue.PaperDbIdFromName(L"iso a4") == 1);
    CHECK(t.catalogue.PaperDbIdFromName(L"LETTER") == 2);
    CHECK(t.catalogue.PaperDbIdFromName(L"8.5X11") == 2);
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("PaperDbIdFromName_unknown_name_warns_and_returns_0") {
    Loaded t;
    CHECK(t.catalogue.PaperDbIdFromName(L"B%s4") == 0);
    CHECK(t.catalogue.PaperDbIdFromName(L"") == 0);
    CHECK(t.log.TakeLines() == Lines{L"Could not resolve PaperSize entry for 'B%s4'.",
                                     L"Could not resolve PaperSize entry for ''."});
}

TEST_CASE("PaperFromAttributeWords_first_paper_word_is_taken_verbatim") {
    Loaded t;
    Words words{L"Duplex", L"LETTER", L"A4"};
    const auto paper = t.catalogue.PaperFromAttributeWords(words);
    CHECK(paper.name == L"LETTER");
    CHECK(paper.dimensions == L"2159,2794");
    CHECK(words == Words{L"Duplex", L"A4"});
}

TEST_CASE("PaperFromAttributeWords_without_paper_word_returns_the_default_size") {
    Loaded t;
    Words words{L"Duplex"};
    const auto paper = t.catalogue.PaperFromAttributeWords(words);
    CHECK(paper.name == L"A4");
    CHECK(paper.dimensions == L"2100,2970");
    CHECK(words == Words{L"Duplex"});
}

TEST_CASE("PaperFromAttributeWords_default_size_without_default_name_has_an_empty_name") {
    Loaded t(Changed(L"<PaperName Default=\"true\">A4", L"<PaperName>A4"));
    Words words;
    const auto paper = t.catalogue.PaperFromAttributeWords(words);
    CHECK(paper.name == L"");
    CHECK(paper.dimensions == L"2100,2970");
}

TEST_CASE("PaperFromAttributeWords_without_default_size_returns_nothing") {
    Loaded t(Changed(L"<PaperSize DbId=\"1\" Default=\"true\">", L"<PaperSize DbId=\"1\">"));
    Words words;
    const auto paper = t.catalogue.PaperFromAttributeWords(words);
    CHECK(paper.name == L"");
    CHECK(paper.dimensions == L"");
}

TEST_CASE("PaperFromDbId_tries_matching_position_then_code_then_any_position") {
    JobAttributeCatalogue::Paper paper;
    {
        Loaded t;
        CHECK(t.catalogue.PaperFromDbId(1, paper));
        CHECK(paper.name == L"A4"); // the default name, not the first
        CHECK(paper.dimensions == L"2100,2970");
    }
    Loaded t(Changed(L"<PaperSize DbId=\"2\"", L"<PaperSize DbId=\"1\""));
    CHECK(t.catalogue.PaperFromDbId(1, paper));
    CHECK(paper.name == L"A4");
    CHECK(t.catalogue.PaperFromDbId(2, paper));
    CHECK(paper.name == L"Letter"); // no entry has code 2
    Loaded swapped(Changed(L"<PaperSize DbId=\"3\"", L"<PaperSize DbId=\"2\""));
    CHECK(swapped.catalogue.PaperFromDbId(2, paper));
    CHECK(paper.name == L"Letter");
    CHECK(swapped.catalogue.PaperFromDbId(3, paper));
    CHECK(paper.name == L"A3");
    Loaded moved(Changed(L"<PaperSize DbId=\"1\"", L"<PaperSize DbId=\"3\""));
    CHECK(moved.catalogue.PaperFromDbId(3, paper));
    CHECK(paper.name == L"A3"); // the entry at this position wins over an earlier entry with the code
    CHECK(moved.catalogue.PaperFromDbId(1, paper));
    CHECK(paper.name == L"A4");
    Loaded crossed(Changed(L"<PaperSize DbId=\"1\"", L"<PaperSize DbId=\"2\""));
    CHECK(crossed.catalogue.PaperFromDbId(1, paper));
    CHECK(paper.name == L"A4");
}

TEST_CASE("PaperFromDbId_code_at_another_position_is_found") {
    std::wstring text = Changed(L"<PaperSize DbId=\"3\"", L"<PaperSize DbId=\"1\"");
    const std::wstring first = L"<PaperSize DbId=\"1\" Default=\"true\">";
    text.replace(text.find(first), first.size(), L"<PaperSize DbId=\"3\" Default=\"true\">");
    Loaded t(text);
    JobAttributeCatalogue::Paper paper;
    CHECK(t.catalogue.PaperFromDbId(1, paper));
    CHECK(paper.name == L"A3");
    CHECK(t.catalogue.PaperFromDbId(3, paper));
    CHECK(paper.name == L"A4");
}

TEST_CASE("PaperFromDbId_out_of_range_is_refused") {
    Loaded t;
    JobAttributeCatalogue::Paper paper;
    CHECK_FALSE(t.catalogue.PaperFromDbId(0, paper));
    CHECK_FALSE(t.catalogue.PaperFromDbId(4, paper));
    CHECK_FALSE(t.catalogue.PaperFromDbId(0xffffffffu, paper));
}

TEST_CASE("AttributeMaskFromNames_ors_the_codes_of_attributes_and_pairs") {
    Loaded t;
    CHECK(t.catalogue.AttributeMaskFromNames(L"Duplex,Color,Draft") == (2 | 8 | 32));
    CHECK(t.catalogue.AttributeMaskFromNames(L"dUPLEX,,COLOR,draft,Unknown") == (2 | 8 | 32));
    CHECK(t.catalogue.AttributeMaskFromNames(L"Simplex,Duplex") == 3);
    CHECK(t.catalogue.AttributeMaskFromNames(L"b&w") == 4);
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("AttributeMaskFromNames_Mono_is_unknown_after_lower_casing") {
    Loaded t;
    CHECK(t.catalogue.AttributeMaskFromNames(L"Mono") == 0);
    CHECK(t.log.TakeLines() == Lines{L"Supplied PageAttributes 'Mono' did not match any attributes."});
}

TEST_CASE("AttributeMaskFromNames_page_attribute_wins_over_a_pair_side") {
    Loaded t(
        Changed(L"<PageAttribute DbId=\"32\" Default=\"false\">Draft", L"<PageAttribute DbId=\"32\">Duplex"));
    CHECK(t.catalogue.AttributeMaskFromNames(L"duplex") == 32);
}

TEST_CASE("AttributeMaskFromNames_without_match_warns_once_but_not_for_empty_text") {
    Loaded t;
    CHECK(t.catalogue.AttributeMaskFromNames(L"Foo,Bar") == 0);
    CHECK(t.log.TakeLines() == Lines{L"Supplied PageAttributes 'Foo,Bar' did not match any attributes."});
    CHECK(t.catalogue.AttributeMaskFromNames(L"") == 0);
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("AttributeNamesFromMask_writes_one_side_per_pair_then_attributes_in_map_order") {
    Loaded t;
    CHECK(t.catalogue.AttributeNamesFromMask(2 | 8 | 16 | 32) == L"Duplex,Color,Draft,TonerSave");
    CHECK(t.catalogue.AttributeNamesFromMask(1 | 2) == L"Simplex");
    CHECK(t.catalogue.AttributeNamesFromMask(0xffffffffu) == L"Simplex,B&W,Draft,TonerSave");
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("AttributeNamesFromMask_without_match_warns_once_but_not_for_0") {
    Loaded t;
    CHECK(t.catalogue.AttributeNamesFromMask(0) == L"");
    CHECK(t.log.TakeLines() == Lines{});
    CHECK(t.catalogue.AttributeNamesFromMask(0xAB000000u) == L"");
    CHECK(t.log.TakeLines() ==
          Lines{L"Supplied DB PageAttributes id '0xab000000' did not match any attributes."});
}

TEST_CASE("NormalizePageAttributes_empty_list_with_defaults_returns_every_default_side") {
    Loaded t;
    Words words;
    CHECK(t.catalogue.NormalizePageAttributes(words, true) == L"Simplex,B&W");
    CHECK(t.catalogue.NormalizePageAttributes(words, false) == L"");
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("NormalizePageAttributes_second_is_the_default_side_unless_first_is_marked") {
    Loaded t(Changed(L"<First DbId=\"4\" Default=\"true\">", L"<First DbId=\"4\" Default=\"false\">"));
    Words words;
    CHECK(t.catalogue.NormalizePageAttributes(words, true) == L"Simplex,Color");
}

TEST_CASE("NormalizePageAttributes_writes_catalogue_wording_and_leaves_unknown_words") {
    Loaded t;
    Words words{L"A4", L"tonersave", L"COLOR", L"x", L"DRAFT"};
    CHECK(t.catalogue.NormalizePageAttributes(words, true) == L"Simplex,Color,TonerSave,Draft");
    CHECK(words == Words{L"A4", L"x"});
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("NormalizePageAttributes_both_sides_of_a_pair_warn_and_use_the_default") {
    Loaded t;
    for (Words words : {Words{L"duplex", L"x", L"simplex"}, Words{L"simplex", L"x", L"duplex"}}) {
        CHECK(t.catalogue.NormalizePageAttributes(words, false) == L"Simplex");
        CHECK(words == Words{L"x"});
        CHECK(t.log.TakeLines() ==
              Lines{L"Both attributes of a pair were present ('Simplex','Duplex'), using Default."});
    }
}

TEST_CASE("NormalizePageAttributes_pair_with_the_same_word_twice_takes_it_once") {
    Loaded t(Changed(L">Duplex<", L">SIMPLEX<"));
    Words words{L"x", L"Simplex", L"y"};
    CHECK(t.catalogue.NormalizePageAttributes(words, false) == L"Simplex");
    CHECK(words == Words{L"x", L"y"});
}

TEST_CASE("FinishingMaskFromNames_ors_the_codes_of_the_words") {
    Loaded t;
    CHECK(t.catalogue.FinishingMaskFromNames(L"STAPLE,fold,other") == 5);
    CHECK(t.log.TakeLines() == Lines{});
    CHECK(t.catalogue.FinishingMaskFromNames(L"Glue") == 0);
    CHECK(t.log.TakeLines() == Lines{L"Supplied JobFinishing 'Glue' did not match any finishing options."});
    CHECK(t.catalogue.FinishingMaskFromNames(L"") == 0);
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("FinishingNamesFromMask_writes_the_names_in_map_order") {
    Loaded t;
    CHECK(t.catalogue.FinishingNamesFromMask(7) == L"Fold,Punch,Staple");
    CHECK(t.catalogue.FinishingNamesFromMask(0) == L"");
    CHECK(t.log.TakeLines() == Lines{});
    CHECK(t.catalogue.FinishingNamesFromMask(0x80000010u) == L"");
    CHECK(t.log.TakeLines() == Lines{L"Supplied JobFinishing DB id '0x80000010' was invalid."});
}

TEST_CASE("PdlDbIdFromName_known_name_ignores_case") {
    Loaded t;
    CHECK(t.catalogue.PdlDbIdFromName(L"pcl") == 1);
    CHECK(t.catalogue.PdlDbIdFromName(L"NT EMF 1.008") == 3);
    CHECK(t.log.TakeLines() == Lines{});
}

TEST_CASE("PdlDbIdFromName_unknown_name_warns_and_returns_the_default_code") {
    Loaded t;
    CHECK(t.catalogue.PdlDbIdFromName(L"Klingon") == 2);
    CHECK(t.log.TakeLines() == Lines{L"Supplied JobPdl 'Klingon' was not found."});
    CHECK(t.catalogue.PdlDbIdFromName(L"") == 2);
    CHECK(t.log.TakeLines() == Lines{L"Supplied JobPdl '' was not found."});
}

TEST_CASE("PdlDbIdFromName_without_default_returns_0_and_warns_for_each_name") {
    Loaded t(Changed(L"<Pdl DbId=\"2\" Default=\"true\">", L"<Pdl DbId=\"2\">"));
    CHECK(t.catalogue.PdlDbIdFromName(L"Klingon") == 0);
    CHECK(t.log.TakeLines() ==
          Lines{L"Supplied JobPdl 'Klingon' was not found.", L"Supplied JobPdl '' was not found."});
}

TEST_CASE("PdlNameFromDbId_unknown_code_warns_and_returns_the_default_name") {
    Loaded t;
    CHECK(t.catalogue.PdlNameFromDbId(3) == L"NT EMF 1.008");
    CHECK(t.log.TakeLines() == Lines{});
    CHECK(t.catalogue.PdlNameFromDbId(0xfeu) == L"PostScript");
    CHECK(t.log.TakeLines() == Lines{L"Supplied JobPdl DB id '0xfe' was invalid. Using Default."});
}

TEST_CASE("JobOptionsFromAttributeWords_takes_finishing_words_and_the_first_pdl") {
    Loaded t;
    Words words{L"A4", L"staple", L"pcl", L"x", L"FOLD", L"PostScript"};
    const auto options = t.catalogue.JobOptionsFromAttributeWords(words);
    CHECK(options.finishing == L"Staple,Fold");
    CHECK(options.pdl == L"PCL");
    CHECK(words == Words{L"A4", L"x", L"PostScript"});
}

TEST_CASE("JobOptionsFromAttributeWords_remove_one_trailing_comma_from_the_default_pdl") {
    Loaded t(Changed(L">PostScript</Pdl>", L">PostScript,,</Pdl>"));
    Words words;
    CHECK(t.catalogue.JobOptionsFromAttributeWords(words).pdl == L"PostScript,");
}

TEST_CASE("DefaultEntryName_is_the_first_default_in_map_order") {
    Loaded t(Changed(L"<Pdl DbId=\"1\" Default=\"false\">", L"<Pdl DbId=\"1\" Default=\"1\">"));
    CHECK(t.catalogue.DefaultEntryName(&CatalogueTables::pdls) == L"PCL");
    CHECK(t.catalogue.DefaultEntryName(&CatalogueTables::finishingAttributes) == L"");
    CHECK(t.catalogue.DefaultEntryName(&CatalogueTables::pageAttributes) == L"");
}
