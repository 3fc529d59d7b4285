#include "tests/support/RecordTest.h"

// Job contents from a page counter's report and from database codes, with the shipped catalogue.

namespace {

/// "paper dimensions attributes sheets bw color blank" of each line, separated by ";".
std::wstring Lines(const ComPtr<IJobContents>& contents) {
    ComPtr<ICopyLines> lines;
    REQUIRE_HR(contents->get_JobCopyLines(lines.Put()), S_OK);
    const LONG count = Value(lines, &ICopyLines::get_Count);
    std::wstring text;
    for (LONG i = 0; i < count; ++i) {
        ComPtr<ICopyLine> line;
        REQUIRE_HR(lines->Item(i, line.Put()), S_OK);
        text += (i ? L";" : L"") + Text(line, &ICopyLine::get_PaperSize) + L" " +
                Text(line, &ICopyLine::get_PaperDimensions) + L" " + Text(line, &ICopyLine::get_Attributes) +
                L" " + std::to_wstring(Value(line, &ICopyLine::get_Sheets)) + L" " +
                std::to_wstring(Value(line, &ICopyLine::get_PagesBW)) + L" " +
                std::to_wstring(Value(line, &ICopyLine::get_PagesColor)) + L" " +
                std::to_wstring(Value(line, &ICopyLine::get_PagesBlank));
    }
    return text;
}

/// "originals copies pdl|finishing".
std::wstring General(const ComPtr<IJobContents>& contents) {
    return std::to_wstring(Value(contents, &IJobContents::get_JobOriginals)) + L" " +
           std::to_wstring(Value(contents, &IJobContents::get_JobCopies)) + L" " +
           Text(contents, &IJobContents::get_JobPdl) + L"|" + Text(contents, &IJobContents::get_JobFinishing);
}

void AddLine(const ComPtr<IJobContents>& contents, const wchar_t* attributes, LONG pagesBW, LONG pagesColor,
             LONG pagesBlank, LONG sheets) {
    REQUIRE_HR(contents->GenerateCopyLineFromPageCounterInfo(UniqueBstr(attributes).Get(), pagesBW,
                                                             pagesColor, pagesBlank, sheets),
               S_OK);
}

ComPtr<IJobContents> FromReport(const wchar_t* attributes, LONG originals, LONG copies, LONG pages,
                                LONG sheets) {
    auto contents = CreateJobContents();
    REQUIRE_HR(contents->GenerateContentsFromPageCounterInfo(UniqueBstr(attributes).Get(), originals, copies,
                                                             pages, sheets),
               S_OK);
    return contents;
}

ComPtr<IJobContents> FromDatabase(const wchar_t* lines, LONG originals = 1, LONG copies = 1, LONG pdl = 1,
                                  LONG finishing = 0) {
    auto contents = CreateJobContents();
    REQUIRE_HR(
        contents->GenerateContentsFromDBInfo(UniqueBstr(lines).Get(), originals, copies, pdl, finishing),
        S_OK);
    return contents;
}

std::wstring GenerateGeneral(const ComPtr<IJobContents>& contents, const wchar_t* attributes, LONG originals,
                             LONG copies, VARIANT_BOOL stripColor) {
    BSTR result = reinterpret_cast<BSTR>(0x1234);
    REQUIRE_HR(contents->GenerateGeneralContentsFromPageCounterInfo(UniqueBstr(attributes).Get(), originals,
                                                                    copies, stripColor, &result),
               S_OK);
    REQUIRE(result != nullptr);
    std::wstring text(result, SysStringLen(result));
    SysFreeString(result);
    return text;
}

} // namespace

TEST_CASE("GenerateContentsFromPageCounterInfo_office_duplex_job") {
    const auto contents = FromReport(L"A4,Duplex,B&W,PostScript,Staple", 12, 2, 24, 12);
    CHECK_TEXT(General(contents), L"12 2 PostScript|Staple");
    CHECK_TEXT(Lines(contents), L"A4 2100,2970 Duplex,B&W 12 24 0 0");
    CHECK_TEXT(Text(contents, &IJobContents::get_DBCopyLines), L"1,24,0,12,6");
    CHECK(Value(contents, &IJobContents::get_DBPdl) == 6);
    CHECK(Value(contents, &IJobContents::get_DBFinishing) == 1);
    CHECK(Value(contents, &IJobContents::get_ContainsDuplex) == VARIANT_TRUE);
}

TEST_CASE("GenerateContentsFromPageCounterInfo_color_word_makes_all_pages_color") {
    CHECK_TEXT(Lines(FromReport(L"Letter,Color", 3, 1, 3, 3)), L"Letter 2159,2794 Simplex,Color 3 0 3 0");
    CHECK_TEXT(Lines(FromReport(L"Letter,color", 3, 1, 3, 3)), L"Letter 2159,2794 Simplex,Color 3 3 0 0");
    CHECK_TEXT(Lines(FromReport(L"Letter,Mono", 3, 1, 3, 3)), L"Letter 2159,2794 Simplex,B&W 3 3 0 0");
}

TEST_CASE("GenerateContentsFromPageCounterInfo_originals_and_copies_are_at_least_1") {
    CHECK_TEXT(General(FromReport(L"", 0, -3, 1, 1)), L"1 1 RAW|");
    CHECK_TEXT(General(FromReport(L"", LONG_MIN, LONG_MAX, 1, 1)), L"1 2147483647 RAW|");
    CHECK_TEXT(General(FromReport(L"", 1, 2, 1, 1)), L"1 2 RAW|");
}

TEST_CASE("GenerateContentsFromPageCounterInfo_without_words_takes_the_defaults") {
    const auto contents = FromReport(L"", 1, 1, 7, 0);
    CHECK_TEXT(Lines(contents), L"A4 2100,2970 Simplex,B&W 1 7 0 0");
    CHECK_HR(contents->GenerateContentsFromPageCounterInfo(nullptr, 1, 1, 8, 4), S_OK);
    CHECK_TEXT(Lines(contents), L"A4 2100,2970 Simplex,B&W 4 8 0 0");
}

TEST_CASE("GenerateContentsFromPageCounterInfo_again_replaces_the_lines") {
    const auto contents = FromReport(L"A4", 1, 1, 7, 7);
    CHECK_HR(contents->GenerateContentsFromPageCounterInfo(UniqueBstr(L"A3").Get(), 1, 1, 2, 2), S_OK);
    CHECK_TEXT(Lines(contents), L"A3 2970,4200 Simplex,B&W 2 2 0 0");
}

TEST_CASE("GenerateCopyLineFromPageCounterInfo_without_pages_counts_one") {
    const auto mono = CreateJobContents();
    AddLine(mono, L"A4", 0, 0, 0, 0);
    CHECK_TEXT(Lines(mono), L"A4 2100,2970 Simplex,B&W 1 1 0 0");
    const auto color = CreateJobContents();
    AddLine(color, L"A4,Color", -5, -6, -7, -8);
    CHECK_TEXT(Lines(color), L"A4 2100,2970 Simplex,Color 1 0 1 0");
    const auto blank = CreateJobContents();
    AddLine(blank, L"A4,Color", 0, -1, 2, 1);
    CHECK_TEXT(Lines(blank), L"A4 2100,2970 Simplex,Color 1 0 0 2");
}

TEST_CASE("GenerateCopyLineFromPageCounterInfo_lines_on_one_paper_size_are_merged") {
    const auto contents = CreateJobContents();
    AddLine(contents, L"Letter,Duplex", 1, 2, 3, 4);
    AddLine(contents, L"A4", 5, 0, 0, 5);
    AddLine(contents, L"Letter,Color", 10, 20, 30, 40);
    CHECK_TEXT(Lines(contents), L"A4 2100,2970 Simplex,B&W 5 5 0 0;Letter 2159,2794 Duplex,B&W 44 11 22 33");
}

TEST_CASE("GenerateCopyLineFromPageCounterInfo_other_fields_of_the_record_stay") {
    const auto contents = FromReport(L"A4,PDF,Staple", 2, 3, 1, 1);
    AddLine(contents, L"A3,PCL,Punch,unknown", 1, 0, 0, 1);
    CHECK_TEXT(General(contents), L"2 3 PDF|Staple");
    CHECK_TEXT(Lines(contents), L"A3 2970,4200 Simplex,B&W 1 1 0 0;A4 2100,2970 Simplex,B&W 1 1 0 0");
}

TEST_CASE("GenerateCopyLineFromPageCounterInfo_defaults_can_be_left_out") {
    const auto contents = CreateJobContents();
    CHECK_HR(contents->put_GenerateDefaultPageAttributes(VARIANT_FALSE), S_OK);
    AddLine(contents, L"A4,Draft", 1, 0, 0, 1);
    CHECK_TEXT(Lines(contents), L"A4 2100,2970 Draft 1 1 0 0");
}

TEST_CASE("GenerateGeneralContents_sets_everything_except_the_paper") {
    const auto contents = FromReport(L"A4", 1, 1, 5, 5);
    CHECK_TEXT(GenerateGeneral(contents, L"A3,Duplex,Color,PDF,XPS,Punch,staple,what", 4, 5, VARIANT_FALSE),
               L"Duplex,Color");
    CHECK_TEXT(General(contents), L"4 5 PDF|Punch,Staple");
    CHECK_TEXT(Lines(contents), L"");
}

TEST_CASE("GenerateGeneralContents_strips_color_words") {
    const auto contents = CreateJobContents();
    CHECK_TEXT(GenerateGeneral(contents, L"Duplex,Color", 1, 1, VARIANT_TRUE), L"Duplex");
    CHECK_TEXT(GenerateGeneral(contents, L"Mono,Draft", 1, 1, VARIANT_TRUE), L"Simplex,Draft");
    CHECK_HR(contents->put_GenerateDefaultPageAttributes(VARIANT_FALSE), S_OK);
    CHECK_TEXT(GenerateGeneral(contents, L"Color", 1, 1, VARIANT_TRUE), L"");
    CHECK_TEXT(GenerateGeneral(contents, L"Color,Draft", 1, 1, VARIANT_TRUE), L",Draft");
    CHECK_TEXT(GenerateGeneral(contents, L"Color", 1, 1, VARIANT_FALSE), L"Color");
}

TEST_CASE("GenerateContentsFromDBInfo_rebuilds_the_record") {
    const auto contents = FromDatabase(L"2,5,1,4,10;1,3,0,2,5", 7, 3, 6, 1 | 2048);
    CHECK_TEXT(General(contents), L"7 3 PostScript|Punch,Staple");
    CHECK_TEXT(Lines(contents), L"A4 2100,2970 Simplex,B&W 2 3 0 0;Letter 2159,2794 Duplex,Color 4 5 1 0");
    CHECK_TEXT(Text(contents, &IJobContents::get_DBCopyLines), L"1,3,0,2,5;2,5,1,4,10");
}

TEST_CASE("GenerateContentsFromDBInfo_originals_and_copies_are_stored_unchanged") {
    CHECK_TEXT(General(FromDatabase(L"", 0, -3)), L"0 -3 RAW|");
    CHECK_TEXT(General(FromDatabase(L"", LONG_MIN, LONG_MAX)), L"-2147483648 2147483647 RAW|");
}

TEST_CASE("GenerateContentsFromDBInfo_unknown_codes_give_defaults") {
    CHECK_TEXT(General(FromDatabase(L"", 1, 1, 9999, 0)), L"1 1 RAW|");
    CHECK_TEXT(General(FromDatabase(L"", 1, 1, 5, 1 << 30)), L"1 1 PCL6|");
}

TEST_CASE("GenerateContentsFromDBInfo_empty_text_leaves_no_lines") {
    const auto contents = FromReport(L"A4", 1, 1, 5, 5);
    CHECK_HR(contents->GenerateContentsFromDBInfo(UniqueBstr(L"").Get(), 1, 1, 1, 0), S_OK);
    CHECK_TEXT(Lines(contents), L"");
    CHECK_HR(contents->GenerateContentsFromDBInfo(nullptr, 1, 1, 1, 0), S_OK);
    CHECK_TEXT(Lines(contents), L"");
}

TEST_CASE("GenerateContentsFromDBInfo_invalid_pieces_are_skipped") {
    CHECK_TEXT(Lines(FromDatabase(L"0,1,1,1,5;1,2,0,2,5;2,1,1,1,0;9999,1,1,1,5;;x;1")),
               L"A4 2100,2970 Simplex,B&W 2 2 0 0");
}

TEST_CASE("GenerateContentsFromDBInfo_base_of_a_number_is_taken_from_its_text") {
    CHECK_TEXT(Lines(FromDatabase(L"0x2,010,0x10,0,0x0A")), L"Letter 2159,2794 Duplex,Color 0 8 16 0");
}

TEST_CASE("GenerateContentsFromDBInfo_counts_are_never_negative_and_sheets_may_be_0") {
    CHECK_TEXT(Lines(FromDatabase(L"1,-5,-6,-7,5")), L"A4 2100,2970 Simplex,B&W 0 0 0 0");
    CHECK_TEXT(Lines(FromDatabase(L"1,1,0,0,5")), L"A4 2100,2970 Simplex,B&W 0 1 0 0");
}

TEST_CASE("GenerateContentsFromDBInfo_mask_with_both_sides_of_a_pair_gives_the_first") {
    CHECK_TEXT(Lines(FromDatabase(L"1,1,0,1,63")), L"A4 2100,2970 Simplex,B&W,Draft,TonerSave 1 1 0 0");
}

TEST_CASE("GenerateContentsFromDBInfo_lines_on_one_paper_size_are_merged") {
    CHECK_TEXT(Lines(FromDatabase(L"1,1,2,3,5;4,1,1,1,5;1,10,20,30,10")),
               L"A3 2970,4200 Simplex,B&W 1 1 1 0;A4 2100,2970 Simplex,B&W 33 11 22 0");
}

TEST_CASE("GenerateContentsFromDBInfo_blank_pages_come_back_as_black_and_white") {
    const auto written = CreateJobContents();
    AddLine(written, L"A4", 3, 0, 2, 1);
    const std::wstring text = Text(written, &IJobContents::get_DBCopyLines);
    CHECK_TEXT(text, L"1,5,0,1,5");
    CHECK_TEXT(Lines(FromDatabase(text.c_str())), L"A4 2100,2970 Simplex,B&W 1 5 0 0");
}
