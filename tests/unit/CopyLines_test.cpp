#include "CapturedLog.h"

#include "JobObjects/contents/CCopyLines.h"

#include "common/xml/QxXmlWriter.h"

#include <catch2/catch.hpp>

#include <limits>

using Lines = std::vector<std::wstring>;

namespace {

std::wstring Xml(const CCopyLines& lines) {
    QxXmlWriter writer;
    lines.WriteXml(writer);
    return std::wstring(writer.Text());
}

CCopyLine Line(const wchar_t* paper, std::int32_t bw, std::int32_t color, std::int32_t blank = 0,
               std::int32_t sheets = 1, const wchar_t* attributes = L"Simplex") {
    CCopyLine line;
    line.SetPaperSize(paper);
    line.SetPagesBW(bw);
    line.SetPagesColor(color);
    line.SetPagesBlank(blank);
    line.SetSheets(sheets);
    line.SetAttributes(attributes);
    return line;
}

std::wstring LineXml(const wchar_t* paper, int bw) {
    return std::wstring(L"<CopyLine><PaperSize>") + paper + L"</PaperSize><PagesBW>" + std::to_wstring(bw) +
           L"</PagesBW></CopyLine>";
}

constexpr std::int32_t Highest = std::numeric_limits<std::int32_t>::max();

} // namespace

TEST_CASE("CopyLines_empty_collection_writes_both_tags") {
    const CCopyLines lines;
    CHECK(lines.Count() == 0);
    CHECK(Xml(lines) == L"<JobCopyLines></JobCopyLines>");
    CHECK(lines.DBText() == L"");
    CHECK(lines.TotalPages() == 0);
    CHECK_FALSE(lines.ContainsDuplex());
}

TEST_CASE("CopyLines_totals_add_up_all_lines") {
    CCopyLines lines;
    lines.Append(Line(L"A4", 1, 2, 4));
    lines.Append(Line(L"A3", 10, 20, 40));
    CHECK(lines.TotalPages() == 77);
    CHECK(lines.TotalPagesBW() == 11);
    CHECK(lines.TotalPagesColor() == 22);
}

TEST_CASE("CopyLines_totals_wrap_around_at_32_bits") {
    CCopyLines lines;
    lines.Append(Line(L"A4", Highest, Highest));
    lines.Append(Line(L"A3", 1, 2));
    CHECK(lines.TotalPagesBW() == std::numeric_limits<std::int32_t>::min());
    CHECK(lines.TotalPagesColor() == std::numeric_limits<std::int32_t>::min() + 1);
    CHECK(lines.TotalPages() == 1);
}

TEST_CASE("CopyLines_ContainsDuplex_needs_one_duplex_line") {
    CCopyLines lines;
    lines.Append(Line(L"A4", 1, 0, 0, 1, L"Simplex"));
    CHECK_FALSE(lines.ContainsDuplex());
    lines.Append(Line(L"A3", 1, 0, 0, 1, L"NoDuplex"));
    CHECK(lines.ContainsDuplex());
    lines.Clear();
    CHECK(lines.Count() == 0);
    CHECK_FALSE(lines.ContainsDuplex());
}

TEST_CASE("CopyLines_read_lines_are_consolidated_and_ordered") {
    CCopyLines lines;
    REQUIRE(lines.put_Xml(L"<JobCopyLines>" + LineXml(L"Letter", 1) + LineXml(L"A4", 2) +
                          LineXml(L"Letter", 4) + L"</JobCopyLines>"));
    REQUIRE(lines.Count() == 2);
    CHECK(lines.Line(0).PaperSize() == L"A4");
    CHECK(lines.Line(0).PagesBW() == 2);
    CHECK(lines.Line(1).PaperSize() == L"Letter");
    CHECK(lines.Line(1).PagesBW() == 5);
}

TEST_CASE("CopyLines_Consolidate_keeps_the_attributes_of_the_first_line_and_sums_all_counts") {
    CCopyLines lines;
    CCopyLine first = Line(L"A4", 1, 2, 3, 4, L"Duplex");
    first.SetPaperDimensions(L"1,1");
    CCopyLine second = Line(L"A4", 10, 20, 30, 40, L"Simplex");
    second.SetPaperDimensions(L"2,2");
    lines.Append(first);
    lines.Append(second);
    lines.Append(Line(L"A4", 100, 200, 300, 400, L"Draft"));
    lines.Consolidate();
    REQUIRE(lines.Count() == 1);
    const CCopyLine& line = lines.Line(0);
    CHECK(line.PagesBW() == 111);
    CHECK(line.PagesColor() == 222);
    CHECK(line.PagesBlank() == 333);
    CHECK(line.Sheets() == 444);
    CHECK(line.Attributes() == L"Duplex");
    CHECK(line.PaperDimensions() == L"1,1");
}

TEST_CASE("CopyLines_Consolidate_compares_paper_sizes_case_sensitively_and_orders_by_code_units") {
    CCopyLines lines;
    for (const wchar_t* paper : {L"a4", L"Z", L"A4", L"", L"\u00e4", L"a4"})
        lines.Append(Line(paper, 1, 0));
    lines.Consolidate();
    REQUIRE(lines.Count() == 5);
    const wchar_t* const order[] = {L"", L"A4", L"Z", L"a4", L"\u00e4"};
    for (std::size_t i = 0; i < 5; ++i)
        CHECK(lines.Line(i).PaperSize() == order[i]);
    CHECK(lines.Line(3).PagesBW() == 2);
}

TEST_CASE("CopyLines_Consolidate_sum_that_wraps_below_one_is_stored_as_zero") {
    CCopyLines lines;
    lines.Append(Line(L"A4", Highest, 1, Highest, Highest));
    lines.Append(Line(L"A4", 1, 1, Highest, 2));
    lines.Append(Line(L"A4", 5, 1, 5, 0));
    lines.Consolidate();
    REQUIRE(lines.Count() == 1);
    CHECK(lines.Line(0).PagesBW() == 5);
    CHECK(lines.Line(0).PagesColor() == 3);
    CHECK(lines.Line(0).PagesBlank() == 5);
    CHECK(lines.Line(0).Sheets() == 0);
}

TEST_CASE("CopyLines_Consolidate_of_many_lines_keeps_one_per_paper") {
    CCopyLines lines;
    for (int i = 0; i < 1000; ++i)
        lines.Append(Line(std::to_wstring(i % 10).c_str(), 1, 0));
    lines.Consolidate();
    REQUIRE(lines.Count() == 10);
    for (std::size_t i = 0; i < 10; ++i)
        CHECK(lines.Line(i).PagesBW() == 100);
}

TEST_CASE("CopyLines_writing_does_not_consolidate") {
    CCopyLines lines;
    lines.Append(Line(L"Z", 1, 0));
    lines.Append(Line(L"A", 2, 0));
    lines.Append(Line(L"Z", 3, 0));
    const std::wstring xml = Xml(lines);
    const auto first = xml.find(L"<PaperSize>Z<");
    const auto second = xml.find(L"<PaperSize>A<");
    CHECK(first < second);
    CHECK(xml.find(L"<PaperSize>Z<", second) != std::wstring::npos);
    CHECK(xml.starts_with(L"<JobCopyLines><CopyLine>"));
    CHECK(xml.ends_with(L"</CopyLine></JobCopyLines>"));
}

TEST_CASE("CopyLines_reading_replaces_the_lines_and_ignores_other_elements") {
    CCopyLines lines;
    lines.Append(Line(L"A4", 1, 0));
    REQUIRE(lines.put_Xml(L"<x:JobCopyLines a=\"1\">\n <Other><CopyLine/></Other> <CopyLine/> text "
                          L"<!-- <CopyLine/> --></x:JobCopyLines>"));
    REQUIRE(lines.Count() == 1);
    CHECK(lines.Line(0).PaperSize() == L"");
    REQUIRE(lines.put_Xml(L"<JobCopyLines/>"));
    CHECK(lines.Count() == 0);
}

TEST_CASE("CopyLines_reading_lines_of_both_forms") {
    CCopyLines lines;
    REQUIRE(lines.put_Xml(L"<JobCopyLines><CopyLine><PaperSize>A</PaperSize><Pages>2</Pages>"
                          L"<PageAttributes>Color</PageAttributes></CopyLine>" +
                          LineXml(L"A", 3) + L"</JobCopyLines>"));
    REQUIRE(lines.Count() == 1);
    CHECK(lines.Line(0).PagesColor() == 2);
    CHECK(lines.Line(0).PagesBW() == 3);
}

TEST_CASE("CopyLines_text_without_the_element_is_refused_logged_and_empties") {
    for (const wchar_t* xml : {L"", L"<JobCopyLines>", L"<CopyLine/>"}) {
        CCopyLines lines;
        lines.Append(Line(L"A4", 1, 0));
        CapturedLog log;
        CHECK_FALSE(lines.put_Xml(xml));
        CHECK(log.TakeLines() == Lines{L"[CCopyLines::put_Xml] Invalid Xml fragment"});
        CHECK(lines.Count() == 0);
    }
}

TEST_CASE("CopyLines_DBText_writes_five_numbers_per_line") {
    CCopyLines lines;
    lines.Append(Line(L"Letter", 3, 7, 2, 6, L"Duplex,Color"));
    CHECK(lines.DBText() == L"2,5,7,6,10");
    lines.Append(Line(L"Napkin", Highest, 0, 1, 1, L"Simplex"));
    CapturedLog log;
    CHECK(lines.DBText() == L"2,5,7,6,10;0,-2147483648,0,1,1");
    CHECK(log.TakeLines() == Lines{L"Could not resolve PaperSize entry for 'Napkin'."});
}

TEST_CASE("CopyLines_DBText_warns_about_the_paper_before_the_attributes") {
    CCopyLines lines;
    lines.Append(Line(L"Napkin", 1, 0, 0, 1, L"Shiny"));
    CapturedLog log;
    CHECK(lines.DBText() == L"0,1,0,1,0");
    CHECK(log.TakeLines() == Lines{L"Could not resolve PaperSize entry for 'Napkin'.",
                                   L"Supplied PageAttributes 'Shiny' did not match any attributes."});
}
