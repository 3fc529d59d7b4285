#include "CapturedLog.h"

#include "JobObjects/contents/CCopyLine.h"

#include "common/xml/QxXmlWriter.h"

#include <catch2/catch.hpp>

#include <cstdint>
#include <limits>

using Lines = std::vector<std::wstring>;

namespace {

std::wstring Xml(const CCopyLine& line) {
    QxXmlWriter writer;
    line.WriteXml(writer);
    return std::wstring(writer.Text());
}

CCopyLine Read(std::wstring_view xml) {
    CCopyLine line;
    REQUIRE(line.put_Xml(xml));
    return line;
}

constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t Lowest = std::numeric_limits<std::int32_t>::min();

} // namespace

TEST_CASE("CopyLine_new_line_is_empty") {
    const CCopyLine line;
    CHECK(line.PagesTotal() == 0);
    CHECK(line.Sheets() == 0);
    CHECK_FALSE(line.IsColor());
    CHECK_FALSE(line.IsDuplex());
    CHECK(Xml(line) ==
          L"<CopyLine><PaperSize/><PaperDimensions/><Attributes/><Sheets>0</Sheets>"
          L"<PagesBW>0</PagesBW><PagesColor>0</PagesColor><PagesBlank>0</PagesBlank></CopyLine>");
}

TEST_CASE("CopyLine_counts_below_zero_are_stored_as_zero") {
    for (const std::int32_t value : {-1, 0, 1, Highest, Lowest}) {
        CCopyLine line;
        line.SetPagesBW(7);
        line.SetPagesBW(value);
        line.SetPagesColor(value);
        line.SetPagesBlank(value);
        line.SetSheets(value);
        const std::int32_t stored = value > 0 ? value : 0;
        CHECK(line.PagesBW() == stored);
        CHECK(line.PagesColor() == stored);
        CHECK(line.PagesBlank() == stored);
        CHECK(line.Sheets() == stored);
    }
}

TEST_CASE("CopyLine_PagesTotal_adds_all_three_counts_and_wraps") {
    CCopyLine line;
    line.SetPagesColor(1);
    line.SetPagesBW(20);
    line.SetPagesBlank(300);
    CHECK(line.PagesTotal() == 321);
    line.SetPagesBW(Highest);
    line.SetPagesBlank(0);
    CHECK(line.PagesTotal() == Lowest);
}

TEST_CASE("CopyLine_IsColor_needs_color_pages") {
    CCopyLine line;
    line.SetAttributes(L"Color");
    CHECK_FALSE(line.IsColor());
    line.SetPagesColor(1);
    CHECK(line.IsColor());
}

TEST_CASE("CopyLine_IsDuplex_is_a_case_sensitive_substring_test") {
    CCopyLine line;
    for (const wchar_t* text : {L"Duplex", L"NoDuplex", L"B&W,Duplex", L"Duplexed"}) {
        line.SetAttributes(text);
        CHECK(line.IsDuplex());
    }
    for (const wchar_t* text : {L"duplex", L"DUPLEX", L"Simplex", L"", L"Du,plex"}) {
        line.SetAttributes(text);
        CHECK_FALSE(line.IsDuplex());
    }
}

TEST_CASE("CopyLine_database_codes_come_from_the_catalogue") {
    CCopyLine line;
    line.SetPaperSize(L"letter");
    line.SetAttributes(L"Duplex,B&W");
    CHECK(line.DBPaperSize() == 2);
    CHECK(line.DBAttributes() == 6);
}

TEST_CASE("CopyLine_unknown_paper_has_code_0_and_a_warning") {
    CCopyLine line;
    line.SetPaperSize(L"Napkin");
    CapturedLog log;
    CHECK(line.DBPaperSize() == 0);
    CHECK(line.DBAttributes() == 0);
    CHECK(log.TakeLines() == Lines{L"Could not resolve PaperSize entry for 'Napkin'."});
}

TEST_CASE("CopyLine_Xml_round_trip_keeps_every_value") {
    CCopyLine line;
    line.SetPaperSize(L"A4 <\"&\">");
    line.SetPaperDimensions(L"2100,2970");
    line.SetAttributes(L"Duplex,B&W");
    line.SetSheets(4);
    line.SetPagesBW(5);
    line.SetPagesColor(6);
    line.SetPagesBlank(Highest);
    const std::wstring xml = Xml(line);
    CHECK(xml == L"<CopyLine><PaperSize>A4 &lt;\"&amp;\"&gt;</PaperSize>"
                 L"<PaperDimensions>2100,2970</PaperDimensions><Attributes>Duplex,B&amp;W</Attributes>"
                 L"<Sheets>4</Sheets><PagesBW>5</PagesBW><PagesColor>6</PagesColor>"
                 L"<PagesBlank>2147483647</PagesBlank></CopyLine>");
    CHECK(Xml(Read(xml)) == xml);
}

TEST_CASE("CopyLine_children_are_read_in_any_order") {
    const CCopyLine line = Read(L"<CopyLine><PagesBlank>3</PagesBlank><PagesColor>2</PagesColor>"
                                L"<PagesBW>1</PagesBW><Sheets>4</Sheets><Attributes>a</Attributes>"
                                L"<PaperDimensions>d</PaperDimensions><PaperSize>p</PaperSize></CopyLine>");
    CHECK(line.PagesBlank() == 3);
    CHECK(line.PagesColor() == 2);
    CHECK(line.PagesBW() == 1);
    CHECK(line.Sheets() == 4);
    CHECK(line.Attributes() == L"a");
    CHECK(line.PaperDimensions() == L"d");
    CHECK(line.PaperSize() == L"p");
}

TEST_CASE("CopyLine_missing_children_reset_old_values") {
    CCopyLine line = Read(L"<CopyLine><PaperSize>p</PaperSize><PaperDimensions>d</PaperDimensions>"
                          L"<Attributes>a</Attributes><Sheets>1</Sheets><PagesBW>1</PagesBW>"
                          L"<PagesColor>1</PagesColor><PagesBlank>1</PagesBlank></CopyLine>");
    REQUIRE(line.put_Xml(L"<CopyLine/>"));
    CHECK(Xml(line) == Xml(CCopyLine()));
}

TEST_CASE("CopyLine_negative_numbers_read_as_zero") {
    const CCopyLine line = Read(L"<CopyLine><Sheets>-1</Sheets><PagesBW>-2</PagesBW>"
                                L"<PagesColor>-3</PagesColor><PagesBlank>-4</PagesBlank></CopyLine>");
    CHECK(Xml(line) == Xml(CCopyLine()));
}

TEST_CASE("CopyLine_older_form_without_color_counts_black_and_white") {
    const CCopyLine line = Read(L"<CopyLine><Pages>5</Pages><PageAttributes>Duplex,B&amp;W</PageAttributes>"
                                L"<PagesColor>9</PagesColor><PagesBlank>9</PagesBlank>"
                                L"<Attributes>ignored</Attributes><Sheets>3</Sheets></CopyLine>");
    CHECK(line.PagesBW() == 5);
    CHECK(line.PagesColor() == 0);
    CHECK(line.PagesBlank() == 0);
    CHECK(line.Sheets() == 3);
    CHECK(line.Attributes() == L"Duplex,");
}

TEST_CASE("CopyLine_older_form_with_color_counts_color") {
    const CCopyLine line = Read(L"<CopyLine><PaperSize>A4</PaperSize><Pages>5</Pages>"
                                L"<PageAttributes>Draft,Color,Duplex</PageAttributes></CopyLine>");
    CHECK(line.PagesColor() == 5);
    CHECK(line.PagesBW() == 0);
    CHECK(line.Attributes() == L"Draft,Duplex");
    CHECK(line.PaperSize() == L"A4");
}

TEST_CASE("CopyLine_older_form_tests_color_case_sensitively_and_clamps_pages") {
    CHECK(Read(L"<CopyLine><Pages>5</Pages><PageAttributes>color</PageAttributes></CopyLine>").PagesBW() ==
          5);
    CHECK(Read(L"<CopyLine><Pages>-5</Pages></CopyLine>").PagesTotal() == 0);
    CHECK(Read(L"<CopyLine><Pages/></CopyLine>").PagesTotal() == 0);
}

TEST_CASE("CopyLine_text_without_the_element_is_refused_and_logged") {
    for (const wchar_t* xml :
         {L"", L"junk", L"<CopyLine>", L"<JobCopyLines><CopyLine/></JobCopyLines>", L"<copyline/>"}) {
        CCopyLine line;
        line.SetSheets(3);
        CapturedLog log;
        CHECK_FALSE(line.put_Xml(xml));
        CHECK(log.TakeLines() == Lines{L"[CCopyLine::put_Xml] Invalid Xml fragment"});
        CHECK(line.Sheets() == 3);
    }
}
