#include "CatalogueStub.h"
#include "CapturedLog.h"

#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <catch2/catch.hpp>

using Lines = std::vector<std::wstring>;

namespace {

const std::wstring Pairs = L"<PageAttributePairs/>";
const std::wstring Attributes = L"<PageAttributes/>";
const std::wstring Finishing = L"<FinishingAttributes/>";
const std::wstring Pdls = L"<Pdls><Pdl DbId='9'/><Pdl DbId=\"7\" Default=\"1\">Raw</Pdl></Pdls>";

/// A catalogue with these paper sizes and otherwise minimal sections.
std::wstring WithPaperSizes(const std::wstring& sizes) {
    return L"<c><PaperSizes>" + sizes + L"</PaperSizes>" + Pairs + Attributes + Finishing + Pdls + L"</c>";
}

std::wstring WithPairs(const std::wstring& content) {
    return L"<c><PaperSizes/><PageAttributePairs>" + content + L"</PageAttributePairs>" + Attributes +
           Finishing + Pdls + L"</c>";
}

/// Loads the text and returns the log lines.
Lines LoadLog(const std::wstring& text) {
    CatalogueStub file(text);
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    catalogue.EnsureLoaded();
    return log.TakeLines();
}

} // namespace

TEST_CASE("EnsureLoaded_complete_file_is_read_once") {
    CatalogueStub file(CatalogueStub::DefaultText());
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    CHECK(catalogue.PaperDbIdFromName(L"Letter") == 2);
    file.SetText(L"<changed/>");
    CHECK(catalogue.PaperDbIdFromName(L"A3") == 3);
    CHECK(file.Reads() == 1);
    CHECK(log.TakeLines() == Lines{});
}

TEST_CASE("EnsureLoaded_unreadable_file_is_tried_and_logged_on_every_call") {
    CatalogueStub file;
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    catalogue.EnsureLoaded();
    catalogue.EnsureLoaded();
    const std::wstring line = L"Failed to load job attributes xml file 'C:\\x\\JobAttributes.xml'. Gone.";
    CHECK(log.TakeLines() == Lines{line, line});
    CHECK(file.Reads() == 2);
    file.SetText(CatalogueStub::DefaultText());
    CHECK(catalogue.PaperDbIdFromName(L"A4") == 1);
    CHECK(log.TakeLines() == Lines{});
}

TEST_CASE("EnsureLoaded_malformed_file_is_logged_as_corrupt") {
    const Lines corrupt{L"Job attributes xml file is corrupt."};
    CHECK(LoadLog(L"") == corrupt);
    CHECK(LoadLog(L"no markup") == corrupt);
    CHECK(LoadLog(L"<c><PaperSizes></c>") == corrupt);
}

TEST_CASE("EnsureLoaded_without_PaperSizes_fails_and_tries_again") {
    CatalogueStub file(L"<c>" + Pairs + Attributes + Finishing + Pdls + L"</c>");
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    catalogue.EnsureLoaded();
    CHECK(log.TakeLines() == Lines{L"Missing 'PaperSizes' xml element."});
    catalogue.EnsureLoaded();
    CHECK(log.TakeLines() == Lines{L"Missing 'PaperSizes' xml element."});
    CHECK(file.Reads() == 2);
}

TEST_CASE("EnsureLoaded_missing_section_is_named") {
    const std::wstring sizes = L"<PaperSizes/>";
    CHECK(LoadLog(L"<c>" + sizes + Attributes + Finishing + Pdls + L"</c>") ==
          Lines{L"Missing 'PageAttributePairs' xml element."});
    CHECK(LoadLog(L"<c>" + sizes + Pairs + Finishing + Pdls + L"</c>") ==
          Lines{L"Missing 'PageAttributes' xml element."});
    CHECK(LoadLog(L"<c>" + sizes + Pairs + Attributes + Pdls + L"</c>") ==
          Lines{L"Missing 'FinishingAttributes' xml element."});
    CHECK(LoadLog(L"<c>" + sizes + Pairs + Attributes + Finishing + L"</c>") ==
          Lines{L"Missing 'Pdls' xml element."});
    CHECK(LoadLog(L"<c>" + sizes + Pairs + Attributes + Finishing + Pdls + L"</c>") == Lines{});
    CHECK(LoadLog(L"<c/>") == Lines{L"Missing 'PaperSizes' xml element."});
}

TEST_CASE("EnsureLoaded_section_out_of_order_counts_as_missing") {
    const std::wstring sizes = L"<PaperSizes/>";
    CHECK(LoadLog(L"<c>" + Pdls + sizes + Pairs + Attributes + Finishing + L"</c>") ==
          Lines{L"Missing 'Pdls' xml element."});
    CHECK(LoadLog(L"<c>" + Pairs + sizes + Attributes + Finishing + Pdls + L"</c>") ==
          Lines{L"Missing 'PageAttributePairs' xml element."});
}

TEST_CASE("EnsureLoaded_element_names_are_exact_and_prefixes_are_dropped") {
    CHECK(LoadLog(L"<c><papersizes/>" + Pairs + Attributes + Finishing + Pdls + L"</c>") ==
          Lines{L"Missing 'PaperSizes' xml element."});
    CHECK(LoadLog(L"<c><v:PaperSizes/>" + Pairs + Attributes + Finishing + Pdls + L"</c>") == Lines{});
}

TEST_CASE("EnsureLoaded_partly_read_tables_are_used_until_a_load_succeeds") {
    const std::wstring size =
        L"<PaperSizes><PaperSize DbId=\"5\"><PaperDimensions/><PaperNames><PaperName>P</PaperName>"
        L"</PaperNames></PaperSize></PaperSizes>";
    CatalogueStub file(L"<c>" + size + L"</c>");
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    const std::wstring missing = L"Missing 'PageAttributePairs' xml element.";
    CHECK(catalogue.PaperDbIdFromName(L"P") == 5);
    CHECK(catalogue.PaperDbIdFromName(L"P") == 5);
    CHECK(log.TakeLines() == Lines{missing, missing});

    SECTION("a corrupt file leaves the tables unchanged") {
        file.SetText(L"<c>");
        CHECK(catalogue.PaperDbIdFromName(L"P") == 5);
    }
    SECTION("a file without the section empties its table") {
        file.SetText(L"<c/>");
        CHECK(catalogue.PaperDbIdFromName(L"P") == 0);
    }
    SECTION("a complete file replaces partly read tables") {
        file.SetText(L"<c>" + size + Pairs + Attributes + L"<FinishingAttributes/></c>");
        catalogue.EnsureLoaded();
        file.SetText(CatalogueStub::DefaultText());
        CHECK(catalogue.PaperDbIdFromName(L"A4") == 1);
        CHECK(catalogue.PdlDbIdFromName(L"PCL") == 1);
    }
}

TEST_CASE("ReadPaperSizes_without_dimensions_warns_and_keeps_zeros") {
    CatalogueStub file(WithPaperSizes(
        L"<PaperSize DbId=\"1\"><PaperNames><PaperName>P</PaperName></PaperNames></PaperSize>"));
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    AttributeText::Words words{L"p"};
    const auto paper = catalogue.PaperFromAttributeWords(words);
    CHECK(log.TakeLines() == Lines{L"Missing 'PaperDimensions' xml element."});
    CHECK(paper.name == L"p");
    CHECK(paper.dimensions == L"0,0");
}

TEST_CASE("ReadPaperSizes_names_before_dimensions_discard_the_size") {
    CatalogueStub file(
        WithPaperSizes(L"<PaperSize DbId=\"1\"><PaperNames><PaperName>P</PaperName></PaperNames>"
                       L"<PaperDimensions><X>1</X><Y>2</Y></PaperDimensions></PaperSize>"));
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    catalogue.EnsureLoaded();
    CHECK(log.TakeLines() == Lines{L"Missing 'PaperNames' xml element."});
    CHECK(catalogue.PaperDbIdFromName(L"P") == 0);
    JobAttributeCatalogue::Paper paper;
    CHECK_FALSE(catalogue.PaperFromDbId(1, paper));
}

TEST_CASE("ReadPaperSizes_size_without_names_takes_no_index") {
    CatalogueStub file(WithPaperSizes(
        L"<PaperSize DbId=\"8\"><PaperDimensions><X>1</X></PaperDimensions><PaperNames/></PaperSize>"
        L"<PaperSize DbId=\"9\"><PaperDimensions><X>3</X><Y>4</Y></PaperDimensions>"
        L"<PaperNames><PaperName Default=\"TRUE\">Q</PaperName></PaperNames></PaperSize>"));
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    CHECK(catalogue.PaperDbIdFromName(L"Q") == 9);
    JobAttributeCatalogue::Paper paper;
    CHECK(catalogue.PaperFromDbId(1, paper));
    CHECK(paper.name == L"Q");
    CHECK(paper.dimensions == L"3,4");
    CHECK_FALSE(catalogue.PaperFromDbId(2, paper));
    CHECK(log.TakeLines() == Lines{});
}

TEST_CASE("ReadPaperSizes_duplicate_name_resolves_to_the_later_size") {
    CatalogueStub file(WithPaperSizes(
        L"<PaperSize DbId=\"1\"><PaperDimensions/><PaperNames><PaperName>Twice</PaperName></PaperNames>"
        L"</PaperSize><PaperSize DbId=\"2\"><PaperDimensions/><PaperNames><PaperName>TWICE</PaperName>"
        L"</PaperNames></PaperSize>"));
    JobAttributeCatalogue catalogue;
    CHECK(catalogue.PaperDbIdFromName(L"Twice") == 2);
    CHECK(catalogue.PaperDbIdFromName(L"twice") == 2);
}

TEST_CASE("ReadPaperSizes_dimensions_out_of_order_or_without_digits_are_zero") {
    CatalogueStub file(
        WithPaperSizes(L"<PaperSize DbId=\"1\"><PaperDimensions><Y>2</Y><X>1</X></PaperDimensions>"
                       L"<PaperNames><PaperName>P</PaperName></PaperNames></PaperSize>"
                       L"<PaperSize DbId=\"2\"><PaperDimensions><X>wide</X><Y>-12mm</Y></PaperDimensions>"
                       L"<PaperNames><PaperName>Q</PaperName></PaperNames></PaperSize>"));
    JobAttributeCatalogue catalogue;
    AttributeText::Words words{L"P"};
    CHECK(catalogue.PaperFromAttributeWords(words).dimensions == L"1,0");
    words = {L"Q"};
    CHECK(catalogue.PaperFromAttributeWords(words).dimensions == L"0,-12");
}

TEST_CASE("ReadPageAttributePairs_missing_side_has_an_empty_name") {
    CatalogueStub file(WithPairs(L"<PageAttributePair><Second DbId=\"2\">B</Second></PageAttributePair>"
                                 L"<PageAttributePair/>"));
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    CHECK(catalogue.AttributeMaskFromNames(L"B") == 2);
    CHECK(catalogue.AttributeNamesFromMask(2) == L"B");
    CHECK(log.TakeLines() == Lines{});
}

TEST_CASE("ReadPageAttributePairs_missing_second_takes_the_attributes_at_the_position_of_first") {
    CatalogueStub file(
        WithPairs(L"<PageAttributePair><First DbId=\"4\" Default=\"true\">A</First></PageAttributePair>"));
    JobAttributeCatalogue catalogue;
    AttributeText::Words words;
    CHECK(catalogue.NormalizePageAttributes(words, true) == L"A");
    CHECK(catalogue.AttributeNamesFromMask(4) == L"A");
}

TEST_CASE("ReadPageAttributePairs_second_before_first_is_missing") {
    CatalogueStub file(WithPairs(L"<PageAttributePair><Second DbId=\"2\">B</Second>"
                                 L"<First DbId=\"1\">A</First></PageAttributePair>"));
    JobAttributeCatalogue catalogue;
    CHECK(catalogue.AttributeMaskFromNames(L"A") == 1);
    CHECK(catalogue.AttributeMaskFromNames(L"B") == 0);
}

TEST_CASE("ReadList_duplicate_name_replaces_the_earlier_entry") {
    CatalogueStub file(L"<c><PaperSizes/>" + Pairs + Attributes +
                       L"<FinishingAttributes><FinishingAttribute DbId=\"1\">Staple</FinishingAttribute>"
                       L"<FinishingAttribute DbId=\"2\">STAPLE</FinishingAttribute></FinishingAttributes>" +
                       Pdls + L"</c>");
    JobAttributeCatalogue catalogue;
    CHECK(catalogue.FinishingMaskFromNames(L"staple") == 2);
    CHECK(catalogue.FinishingNamesFromMask(3) == L"STAPLE");
}

TEST_CASE("ReadList_attributes_follow_the_rules_of_the_parser") {
    // A value in single quotes is not found; codes are signed decimal numbers.
    CatalogueStub file(L"<c><PaperSizes/>" + Pairs + Attributes + Finishing +
                       L"<Pdls><Pdl DbId='9'>Single</Pdl><Pdl DbId=\"3000000000\">Big</Pdl>"
                       L"<Pdl DbId=\"-1\">Minus</Pdl><Pdl DbId=\"0x10\">Hex</Pdl>"
                       L"<Pdl Default=\"True\" DbId=\" 12a\">Digits</Pdl></Pdls></c>");
    JobAttributeCatalogue catalogue;
    CHECK(catalogue.PdlDbIdFromName(L"Single") == 0);
    CHECK(catalogue.PdlDbIdFromName(L"Big") == 0x7fffffffu);
    CHECK(catalogue.PdlDbIdFromName(L"Minus") == 0xffffffffu);
    CHECK(catalogue.PdlDbIdFromName(L"Hex") == 0);
    CHECK(catalogue.PdlDbIdFromName(L"Digits") == 12);
    CHECK(catalogue.DefaultEntryName(&CatalogueTables::pdls) == L"Digits");
}

TEST_CASE("EnsureLoaded_every_operation_loads_first") {
    using Operation = void (*)(JobAttributeCatalogue&);
    const Operation operations[] = {
        [](JobAttributeCatalogue& c) { c.PaperDbIdFromName(L"A4"); },
        [](JobAttributeCatalogue& c) {
            AttributeText::Words w;
            c.PaperFromAttributeWords(w);
        },
        [](JobAttributeCatalogue& c) {
            JobAttributeCatalogue::Paper p;
            c.PaperFromDbId(1, p);
        },
        [](JobAttributeCatalogue& c) { c.AttributeMaskFromNames(L"Duplex"); },
        [](JobAttributeCatalogue& c) { c.AttributeNamesFromMask(1); },
        [](JobAttributeCatalogue& c) {
            AttributeText::Words w;
            c.NormalizePageAttributes(w, true);
        },
        [](JobAttributeCatalogue& c) { c.FinishingMaskFromNames(L"Staple"); },
        [](JobAttributeCatalogue& c) { c.FinishingNamesFromMask(1); },
        [](JobAttributeCatalogue& c) { c.PdlDbIdFromName(L"PCL"); },
        [](JobAttributeCatalogue& c) { c.PdlNameFromDbId(1); },
        [](JobAttributeCatalogue& c) {
            AttributeText::Words w;
            c.JobOptionsFromAttributeWords(w);
        },
        [](JobAttributeCatalogue& c) { c.DefaultEntryName(&CatalogueTables::pdls); },
    };
    for (const Operation operation : operations) {
        CatalogueStub file(CatalogueStub::DefaultText());
        JobAttributeCatalogue catalogue;
        operation(catalogue);
        CHECK(file.Reads() == 1);
        operation(catalogue);
        CHECK(file.Reads() == 1);
    }
}

TEST_CASE("Catalogue_mask_of_0_loads_nothing") {
    const CatalogueStub file;
    JobAttributeCatalogue catalogue;
    CapturedLog log;
    CHECK(catalogue.AttributeNamesFromMask(0) == L"");
    CHECK(catalogue.FinishingNamesFromMask(0) == L"");
    CHECK(file.Reads() == 0);
    CHECK(log.TakeLines().empty());
}
