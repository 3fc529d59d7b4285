#include "CapturedLog.h"

#include "JobObjects/contents/CJobContents.h"

#include <catch2/catch.hpp>

using Lines = std::vector<std::wstring>;

namespace {

const CCopyLine& OnlyLine(const CJobContents& contents) {
    REQUIRE(contents.JobCopyLines().Count() == 1);
    return contents.JobCopyLines().Line(0);
}

/// Generates the contents from a database text with these copy lines.
CJobContents& FromDB(CJobContents& contents, std::wstring_view copyLines) {
    contents.GenerateContentsFromDBInfo(copyLines, 1, 1, 1, 1);
    return contents;
}

} // namespace

TEST_CASE("GenerateGeneral_stores_at_least_one_original_and_copy") {
    CJobContents contents;
    for (const std::int32_t value : {-3, 0, 1}) {
        contents.GenerateGeneralContentsFromPageCounterInfo(L"", value, value, false);
        CHECK(contents.JobOriginals() == 1);
        CHECK(contents.JobCopies() == 1);
    }
    contents.GenerateGeneralContentsFromPageCounterInfo(L"", 2, 3, false);
    CHECK(contents.JobOriginals() == 2);
    CHECK(contents.JobCopies() == 3);
}

TEST_CASE("GenerateGeneral_sets_pdl_and_finishing_and_empties_the_lines") {
    CJobContents contents;
    contents.JobCopyLines().Append(CCopyLine());
    const QxString attributes = contents.GenerateGeneralContentsFromPageCounterInfo(
        L"A3,staple,Punch,pcl,PostScript,Duplex,Color,draft,Foo", 1, 1, false);
    CHECK(contents.JobFinishing() == L"Staple,Punch");
    CHECK(contents.JobPdl() == L"PCL");
    CHECK(contents.JobCopyLines().Count() == 0);
    CHECK(attributes == L"Duplex,Color,Draft");
}

TEST_CASE("GenerateGeneral_without_pdl_word_takes_the_default") {
    CJobContents contents;
    contents.SetJobPdl(L"PCL");
    contents.SetJobFinishing(L"Staple");
    contents.GenerateGeneralContentsFromPageCounterInfo(L"A4", 1, 1, false);
    CHECK(contents.JobPdl() == L"PostScript");
    CHECK(contents.JobFinishing() == L"");
}

TEST_CASE("GenerateGeneral_Mono_counts_as_black_and_white") {
    CJobContents contents;
    contents.SetGenerateDefaultPageAttributes(false);
    CHECK(contents.GenerateGeneralContentsFromPageCounterInfo(L"Mono", 1, 1, false) == L"B&W");
    CHECK(contents.GenerateGeneralContentsFromPageCounterInfo(L"mono", 1, 1, false) == L"");
}

TEST_CASE("GenerateGeneral_StripColor_removes_the_color_words") {
    CJobContents contents;
    CHECK(contents.GenerateGeneralContentsFromPageCounterInfo(L"Color,Duplex", 1, 1, true) == L"Duplex");
    CHECK(contents.GenerateGeneralContentsFromPageCounterInfo(L"Draft", 1, 1, true) == L"Simplex,Draft");
    contents.SetGenerateDefaultPageAttributes(false);
    CHECK(contents.GenerateGeneralContentsFromPageCounterInfo(L"Color", 1, 1, true) == L"");
    CHECK(contents.GenerateGeneralContentsFromPageCounterInfo(L"Color,Draft", 1, 1, true) == L",Draft");
}

TEST_CASE("GenerateCopyLine_takes_counts_paper_and_attributes") {
    CJobContents contents;
    contents.GenerateCopyLineFromPageCounterInfo(L"Foo,LETTER,duplex,PCL,DRAFT", 1, 2, 3, 4);
    const CCopyLine& line = OnlyLine(contents);
    CHECK(line.PagesBW() == 1);
    CHECK(line.PagesColor() == 2);
    CHECK(line.PagesBlank() == 3);
    CHECK(line.Sheets() == 4);
    CHECK(line.PaperSize() == L"LETTER");
    CHECK(line.PaperDimensions() == L"2159,2794");
    CHECK(line.Attributes() == L"Duplex,B&W,Draft");
}

TEST_CASE("GenerateCopyLine_without_pages_counts_one_page") {
    CJobContents contents;
    contents.GenerateCopyLineFromPageCounterInfo(L"A4", 0, -1, 0, 0);
    CHECK(OnlyLine(contents).PagesBW() == 1);
    CHECK(OnlyLine(contents).PagesColor() == 0);
    CHECK(OnlyLine(contents).Sheets() == 1);
    contents.JobCopyLines().Clear();
    contents.GenerateCopyLineFromPageCounterInfo(L"A4,Color", 0, 0, -9, -1);
    CHECK(OnlyLine(contents).PagesBW() == 0);
    CHECK(OnlyLine(contents).PagesColor() == 1);
    CHECK(OnlyLine(contents).PagesBlank() == 0);
    CHECK(OnlyLine(contents).Sheets() == 1);
}

TEST_CASE("GenerateCopyLine_blank_pages_alone_are_enough") {
    CJobContents contents;
    contents.GenerateCopyLineFromPageCounterInfo(L"", -5, 0, 2, 1);
    CHECK(OnlyLine(contents).PagesTotal() == 2);
    CHECK(OnlyLine(contents).PagesBlank() == 2);
}

TEST_CASE("GenerateCopyLine_without_paper_word_takes_the_default_paper") {
    CJobContents contents;
    contents.GenerateCopyLineFromPageCounterInfo(L"Napkin", 1, 0, 0, 1);
    CHECK(OnlyLine(contents).PaperSize() == L"A4");
    CHECK(OnlyLine(contents).PaperDimensions() == L"2100,2970");
    CHECK(OnlyLine(contents).Attributes() == L"Simplex,B&W");
}

TEST_CASE("GenerateCopyLine_adds_defaults_only_if_the_flag_is_set") {
    CJobContents contents;
    contents.SetGenerateDefaultPageAttributes(false);
    contents.GenerateCopyLineFromPageCounterInfo(L"A4", 1, 0, 0, 1);
    CHECK(OnlyLine(contents).Attributes() == L"");
}

TEST_CASE("GenerateCopyLine_lines_of_one_paper_are_merged") {
    CJobContents contents;
    contents.GenerateCopyLineFromPageCounterInfo(L"Letter,Duplex", 1, 2, 3, 4);
    contents.GenerateCopyLineFromPageCounterInfo(L"A4", 1, 0, 0, 1);
    contents.GenerateCopyLineFromPageCounterInfo(L"Letter", 10, 20, 30, 40);
    REQUIRE(contents.JobCopyLines().Count() == 2);
    CHECK(contents.JobCopyLines().Line(0).PaperSize() == L"A4");
    const CCopyLine& line = contents.JobCopyLines().Line(1);
    CHECK(line.PagesBW() == 11);
    CHECK(line.PagesColor() == 22);
    CHECK(line.PagesBlank() == 33);
    CHECK(line.Sheets() == 44);
    CHECK(line.Attributes() == L"Duplex,B&W");
}

TEST_CASE("GenerateContents_creates_one_line_of_one_color") {
    CJobContents contents;
    contents.GenerateContentsFromPageCounterInfo(L"A3,PCL,Staple", 0, -3, 7, 4);
    CHECK(contents.JobOriginals() == 1);
    CHECK(contents.JobCopies() == 1);
    CHECK(contents.JobPdl() == L"PCL");
    CHECK(contents.JobFinishing() == L"Staple");
    CHECK(OnlyLine(contents).PaperSize() == L"A3");
    CHECK(OnlyLine(contents).PagesBW() == 7);
    CHECK(OnlyLine(contents).PagesColor() == 0);
    CHECK(OnlyLine(contents).Sheets() == 4);

    contents.GenerateContentsFromPageCounterInfo(L"A4,Color", 2, 3, 7, 0);
    CHECK(contents.JobOriginals() == 2);
    CHECK(contents.JobCopies() == 3);
    CHECK(OnlyLine(contents).PaperSize() == L"A4");
    CHECK(OnlyLine(contents).PagesBW() == 0);
    CHECK(OnlyLine(contents).PagesColor() == 7);
    CHECK(OnlyLine(contents).Sheets() == 1);
    CHECK(OnlyLine(contents).Attributes() == L"Simplex,Color");
}

TEST_CASE("GenerateFromDB_rebuilds_the_whole_record") {
    CJobContents contents;
    contents.GenerateCopyLineFromPageCounterInfo(L"A4", 9, 9, 9, 9);
    CapturedLog log;
    contents.GenerateContentsFromDBInfo(L"2,5,7,6,10;1,1,0,0,1", 4, -3, 3, 5);
    CHECK(log.TakeLines() == Lines{});
    CHECK(contents.JobOriginals() == 4);
    CHECK(contents.JobCopies() == -3);
    CHECK(contents.JobPdl() == L"NT EMF 1.008");
    CHECK(contents.JobFinishing() == L"Fold,Staple");
    REQUIRE(contents.JobCopyLines().Count() == 2);
    CHECK(contents.JobCopyLines().Line(0).PaperSize() == L"A4");
    CHECK(contents.JobCopyLines().Line(0).Sheets() == 0);
    const CCopyLine& line = contents.JobCopyLines().Line(1);
    CHECK(line.PaperSize() == L"Letter");
    CHECK(line.PaperDimensions() == L"2159,2794");
    CHECK(line.PagesBW() == 5);
    CHECK(line.PagesColor() == 7);
    CHECK(line.PagesBlank() == 0);
    CHECK(line.Sheets() == 6);
    CHECK(line.Attributes() == L"Duplex,Color");
    CHECK(contents.DBCopyLines() == L"1,1,0,0,1;2,5,7,6,10");
}

TEST_CASE("GenerateFromDB_unknown_codes_use_defaults_and_warn") {
    CJobContents contents;
    CapturedLog log;
    contents.GenerateContentsFromDBInfo(L"", 0, 0, 77, 64);
    CHECK(contents.JobPdl() == L"PostScript");
    CHECK(contents.JobFinishing() == L"");
    CHECK(contents.JobCopyLines().Count() == 0);
    CHECK(log.TakeLines() == Lines{L"Supplied JobPdl DB id '0x4d' was invalid. Using Default.",
                                   L"Supplied JobFinishing DB id '0x40' was invalid."});
}

TEST_CASE("GenerateFromDB_invalid_pieces_are_logged_and_skipped") {
    CJobContents contents;
    CapturedLog log;
    FromDB(contents, L"0,1,1,1,1;1,1,1,1,0;;4,1,1,1,1;junk;1,1,1,1;-1,1,1,1,1;2,3,0,1,1");
    CHECK(log.TakeLines() ==
          Lines{L"DB CopyLine string '0,1,1,1,1' is invalid.", L"DB CopyLine string '1,1,1,1,0' is invalid.",
                L"DB CopyLine string '4,1,1,1,1' is invalid.", L"DB CopyLine string 'junk' is invalid.",
                L"DB CopyLine string '1,1,1,1' is invalid.", L"DB CopyLine string '-1,1,1,1,1' is invalid."});
    CHECK(OnlyLine(contents).PaperSize() == L"Letter");
    CHECK(OnlyLine(contents).PagesBW() == 3);
}

TEST_CASE("GenerateFromDB_number_prefix_selects_the_base") {
    CJobContents contents;
    FromDB(contents, L"0x2,010,0xff,9x,0X1");
    const CCopyLine& line = OnlyLine(contents);
    CHECK(line.PaperSize() == L"Letter");
    CHECK(line.PagesBW() == 8);
    CHECK(line.PagesColor() == 255);
    CHECK(line.Sheets() == 9);
    CHECK(line.Attributes() == L"Simplex");
}

TEST_CASE("GenerateFromDB_empty_field_counts_as_zero_and_further_fields_are_ignored") {
    CJobContents contents;
    FromDB(contents, L"1,,2,,4,99,junk");
    const CCopyLine& line = OnlyLine(contents);
    CHECK(line.PagesBW() == 0);
    CHECK(line.PagesColor() == 2);
    CHECK(line.Sheets() == 0);
    CHECK(line.Attributes() == L"B&W");
}

TEST_CASE("GenerateFromDB_counts_beyond_31_bits_are_stored_as_zero") {
    CJobContents contents;
    FromDB(contents, L"1,2147483647,2147483648,99999999999,1");
    CHECK(OnlyLine(contents).PagesBW() == 2147483647);
    CHECK(OnlyLine(contents).PagesColor() == 0);
    CHECK(OnlyLine(contents).Sheets() == 0);
}

TEST_CASE("GenerateFromDB_mask_without_known_bits_keeps_the_line") {
    CJobContents contents;
    CapturedLog log;
    FromDB(contents, L"1,1,0,1,0x100");
    CHECK(OnlyLine(contents).Attributes() == L"");
    CHECK(log.TakeLines() == Lines{L"Supplied DB PageAttributes id '0x100' did not match any attributes."});
}

TEST_CASE("GenerateFromDB_lines_of_one_paper_are_merged") {
    CJobContents contents;
    FromDB(contents, L"1,1,0,1,2;1,2,3,4,1");
    CHECK(OnlyLine(contents).PagesBW() == 3);
    CHECK(OnlyLine(contents).PagesColor() == 3);
    CHECK(OnlyLine(contents).Sheets() == 5);
    CHECK(OnlyLine(contents).Attributes() == L"Duplex");
}

TEST_CASE("GenerateFromDB_of_DBCopyLines_text_restores_blank_pages_as_black_and_white") {
    CJobContents written;
    written.GenerateCopyLineFromPageCounterInfo(L"A3,Duplex", 3, 4, 2, 5);
    CJobContents read;
    FromDB(read, written.DBCopyLines());
    const CCopyLine& line = OnlyLine(read);
    CHECK(line.PaperSize() == L"A3");
    CHECK(line.PagesBW() == 5);
    CHECK(line.PagesColor() == 4);
    CHECK(line.PagesBlank() == 0);
    CHECK(line.Sheets() == 5);
    CHECK(line.Attributes() == L"Duplex,B&W");
}
