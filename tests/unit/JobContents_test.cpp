#include "CapturedLog.h"

#include "JobObjects/contents/CJobContents.h"

#include "common/xml/QxXmlWriter.h"
#include "common/xml/XmlNamespace.h"

#include <catch2/catch.hpp>

using Lines = std::vector<std::wstring>;

namespace {

std::wstring Xml(const CJobContents& contents) {
    QxXmlWriter writer;
    contents.WriteXml(writer);
    return std::wstring(writer.Text());
}

const std::wstring Start = L"<JobContents xmlns=\"" QX_XML_NAMESPACE_BASE L"/OutputManagement/JobContents\"";

} // namespace

TEST_CASE("JobContents_new_record_has_its_defaults") {
    const CJobContents contents;
    CHECK(contents.JobCopyLines().Count() == 0);
    CHECK(contents.GenerateDefaultPageAttributes());
    CHECK(contents.JobOriginals() == 0);
    CHECK(contents.JobCopies() == 0);
    CHECK(contents.JobPdl() == L"");
    CHECK(contents.JobFinishing() == L"");
    CHECK(contents.Version().AsString() == L"4.0");
    CHECK(contents.DBCopyLines() == L"");
    CHECK(Xml(contents) == Start + L" Version=\"4.0\"><JobCopyLines></JobCopyLines>"
                                   L"<JobOriginals>0</JobOriginals><JobCopies>0</JobCopies>"
                                   L"<JobPdl/><JobFinishing/></JobContents>");
}

TEST_CASE("JobContents_counts_below_zero_are_stored_as_zero") {
    CJobContents contents;
    contents.SetJobOriginals(5);
    contents.SetJobCopies(6);
    CHECK(contents.JobOriginals() == 5);
    CHECK(contents.JobCopies() == 6);
    contents.SetJobOriginals(-5);
    contents.SetJobCopies(-1);
    CHECK(contents.JobOriginals() == 0);
    CHECK(contents.JobCopies() == 0);
}

TEST_CASE("JobContents_IsPdlEMF_is_a_case_sensitive_substring_test") {
    CJobContents contents;
    for (const wchar_t* pdl : {L"EMF", L"NT EMF 1.008", L"xEMFx", L"PCL,EMF"}) {
        contents.SetJobPdl(pdl);
        CHECK(contents.IsPdlEMF());
    }
    for (const wchar_t* pdl : {L"emf", L"Emf", L"EM F", L""}) {
        contents.SetJobPdl(pdl);
        CHECK_FALSE(contents.IsPdlEMF());
    }
}

TEST_CASE("JobContents_database_codes_come_from_the_catalogue") {
    CJobContents contents;
    contents.SetJobPdl(L"pcl");
    contents.SetJobFinishing(L"Staple,Fold");
    CHECK(contents.DBPdl() == 1);
    CHECK(contents.DBFinishing() == 5);
    CapturedLog log;
    contents.SetJobPdl(L"?");
    contents.SetJobFinishing(L"?");
    CHECK(contents.DBPdl() == 2);
    CHECK(contents.DBFinishing() == 0);
    CHECK(log.TakeLines() == Lines{L"Supplied JobPdl '?' was not found.",
                                   L"Supplied JobFinishing '?' did not match any finishing options."});
}

TEST_CASE("JobContents_DBCopyLines_counts_blank_pages_as_black_and_white") {
    CJobContents contents;
    CCopyLine line;
    line.SetPaperSize(L"A4");
    line.SetPagesBW(3);
    line.SetPagesBlank(2);
    line.SetAttributes(L"Simplex");
    contents.JobCopyLines().Append(line);
    CHECK(contents.DBCopyLines() == L"1,5,0,0,1");
}

TEST_CASE("JobContents_Xml_round_trip_keeps_every_value") {
    const std::wstring xml =
        Start + L" Version=\"4.1.2\"><JobCopyLines><CopyLine><PaperSize>A4</PaperSize>"
                L"<PaperDimensions>2100,2970</PaperDimensions><Attributes>Duplex,B&amp;W</Attributes>"
                L"<Sheets>2</Sheets><PagesBW>3</PagesBW><PagesColor>0</PagesColor><PagesBlank>1</PagesBlank>"
                L"</CopyLine></JobCopyLines><JobOriginals>4</JobOriginals><JobCopies>2</JobCopies>"
                L"<JobPdl>PCL</JobPdl><JobFinishing>Staple</JobFinishing></JobContents>";
    CJobContents contents;
    REQUIRE(contents.put_Xml(xml));
    CHECK(contents.JobOriginals() == 4);
    CHECK(contents.JobCopyLines().TotalPages() == 4);
    CHECK(Xml(contents) == xml);
}

TEST_CASE("JobContents_version_is_written_with_its_defined_components") {
    for (const wchar_t* version : {L"1.2", L"1.2.3", L"1.2.3.4", L"4.0.0.0"}) {
        CJobContents contents;
        REQUIRE(contents.put_Xml(std::wstring(L"<JobContents Version=\"") + version +
                                 L"\"><JobCopyLines/></JobContents>"));
        CHECK(contents.Version().AsString() == version);
        CHECK(Xml(contents).starts_with(Start + L" Version=\"" + version + L"\">"));
    }
}

TEST_CASE("JobContents_without_version_is_4_0") {
    for (const wchar_t* xml : {L"<JobContents><JobCopyLines/></JobContents>",
                               L"<JobContents Version=\"\"><JobCopyLines/></JobContents>"}) {
        CJobContents contents;
        REQUIRE(contents.put_Xml(L"<JobContents Version=\"3.1\"><JobCopyLines/></JobContents>"));
        REQUIRE(contents.put_Xml(xml));
        CHECK(contents.Version().AsString() == L"4.0");
    }
}

TEST_CASE("JobContents_malformed_version_is_kept_as_invalid") {
    CJobContents contents;
    CHECK(contents.put_Xml(L"<JobContents Version=\"four\"><JobCopyLines/></JobContents>"));
    CHECK(contents.Version().AsString() == L"<invalid>");
}

TEST_CASE("JobContents_children_are_read_in_any_order_with_defaults") {
    CJobContents contents;
    REQUIRE(contents.put_Xml(L"<JobContents><JobFinishing>f</JobFinishing><JobPdl>p</JobPdl>"
                             L"<JobCopies>3</JobCopies><JobOriginals>-4</JobOriginals>"
                             L"<JobCopyLines><CopyLine/></JobCopyLines></JobContents>"));
    CHECK(contents.JobFinishing() == L"f");
    CHECK(contents.JobPdl() == L"p");
    CHECK(contents.JobCopies() == 3);
    CHECK(contents.JobOriginals() == 0);
    CHECK(contents.JobCopyLines().Count() == 1);
    REQUIRE(contents.put_Xml(L"<JobContents><JobCopyLines/></JobContents>"));
    CHECK(Xml(contents) == Xml(CJobContents()));
}

TEST_CASE("JobContents_read_copy_lines_are_consolidated") {
    CJobContents contents;
    REQUIRE(
        contents.put_Xml(L"<JobContents><JobCopyLines><CopyLine><PaperSize>B</PaperSize></CopyLine>"
                         L"<CopyLine><PaperSize>A</PaperSize></CopyLine><CopyLine><PaperSize>B</PaperSize>"
                         L"</CopyLine></JobCopyLines></JobContents>"));
    REQUIRE(contents.JobCopyLines().Count() == 2);
    CHECK(contents.JobCopyLines().Line(0).PaperSize() == L"A");
}

TEST_CASE("JobContents_text_without_the_element_is_refused_and_changes_nothing") {
    for (const wchar_t* xml : {L"", L"<JobContents>", L"<PrintJob><JobContents/></PrintJob>"}) {
        CJobContents contents;
        contents.SetJobCopies(3);
        CapturedLog log;
        CHECK_FALSE(contents.put_Xml(xml));
        CHECK(log.TakeLines() == Lines{L"[CJobContents::put_Xml] Invalid Xml fragment"});
        CHECK(contents.JobCopies() == 3);
    }
}

TEST_CASE("JobContents_without_copy_lines_reads_the_rest_and_then_fails") {
    CJobContents contents;
    contents.JobCopyLines().Append(CCopyLine());
    CapturedLog log;
    CHECK_FALSE(contents.put_Xml(L"<JobContents Version=\"3.0\"><JobCopies>3</JobCopies><JobPdl>p</JobPdl>"
                                 L"</JobContents>"));
    CHECK(log.TakeLines() == Lines{L"[CCopyLines::put_Xml] Invalid Xml fragment",
                                   L"[CJobContents::put_Xml] Invalid Xml fragment"});
    CHECK(contents.JobCopyLines().Count() == 0);
    CHECK(contents.JobCopies() == 3);
    CHECK(contents.JobPdl() == L"p");
    CHECK(contents.Version().AsString() == L"3.0");
}

TEST_CASE("MatchAttributes_assigns_each_word_to_its_property") {
    const CJobContents contents;
    const auto match = contents.MatchAttributes(L"LETTER,Color,pcl,duplex,staple,FOLD,draft,Foo,Bar");
    CHECK(match.isColor);
    CHECK(match.paperSize == L"LETTER");
    CHECK(match.paperDimensions == L"2159,2794");
    CHECK(match.jobPdl == L"PCL");
    CHECK(match.jobFinishing == L"Staple,Fold");
    // The color words are removed first, so this pair gets its default.
    CHECK(match.pageAttributes == L"Duplex,B&W,Draft");
    CHECK(match.unmatchedAttributes == L"Foo,Bar");
}

TEST_CASE("MatchAttributes_empty_text_returns_the_defaults") {
    CJobContents contents;
    auto match = contents.MatchAttributes(L"");
    CHECK_FALSE(match.isColor);
    CHECK(match.paperSize == L"A4");
    CHECK(match.paperDimensions == L"2100,2970");
    CHECK(match.jobPdl == L"PostScript");
    CHECK(match.jobFinishing == L"");
    CHECK(match.pageAttributes == L"Simplex,B&W");
    CHECK(match.unmatchedAttributes == L"");
    contents.SetGenerateDefaultPageAttributes(false);
    match = contents.MatchAttributes(L"");
    CHECK(match.pageAttributes == L"");
}

TEST_CASE("MatchAttributes_second_pdl_stays_unmatched") {
    const auto match = CJobContents().MatchAttributes(L"PCL,PostScript,pcl");
    CHECK(match.jobPdl == L"PCL");
    CHECK(match.unmatchedAttributes == L"PostScript,pcl");
}

TEST_CASE("MatchAttributes_second_paper_stays_unmatched") {
    const auto match = CJobContents().MatchAttributes(L"A3,A4");
    CHECK(match.paperSize == L"A3");
    CHECK(match.unmatchedAttributes == L"A4");
}

TEST_CASE("MatchAttributes_duplicate_word_is_taken_once_by_its_pair") {
    const auto twice = CJobContents().MatchAttributes(L"duplex,Draft,Duplex,DUPLEX");
    CHECK(twice.pageAttributes == L"Duplex,B&W,Draft");
    CHECK(twice.unmatchedAttributes == L"Duplex,DUPLEX"); // the pair took the first
    const auto both = CJobContents().MatchAttributes(L"Duplex,Simplex,Duplex");
    CHECK(both.pageAttributes == L"Simplex,B&W");
    CHECK(both.unmatchedAttributes == L"Duplex");
}

TEST_CASE("MatchAttributes_Mono_is_black_and_white_case_sensitively") {
    CJobContents contents;
    contents.SetGenerateDefaultPageAttributes(false);
    CHECK(contents.MatchAttributes(L"Mono").pageAttributes == L"B&W");
    CHECK(contents.MatchAttributes(L"Mono").unmatchedAttributes == L"");
    CHECK_FALSE(contents.MatchAttributes(L"Mono").isColor);
    CHECK(contents.MatchAttributes(L"B&W,Mono").pageAttributes == L"B&W"); // the literal B&W is removed first
    CHECK(contents.MatchAttributes(L"Mono,Mono").unmatchedAttributes == L"B&W");
    const auto lower = contents.MatchAttributes(L"mono");
    CHECK(lower.pageAttributes == L"");
    CHECK(lower.unmatchedAttributes == L"mono");
}

TEST_CASE("MatchAttributes_color_is_a_case_sensitive_substring_test") {
    CHECK(CJobContents().MatchAttributes(L"x,HighColor").isColor);
    CHECK(CJobContents().MatchAttributes(L"x,HighColor").unmatchedAttributes == L"x,High");
    const auto lower = CJobContents().MatchAttributes(L"color");
    CHECK_FALSE(lower.isColor);
    CHECK(lower.pageAttributes == L"Simplex,Color"); // the word lookup ignores case
}

TEST_CASE("MatchAttributes_changes_nothing_in_the_record") {
    CJobContents contents;
    const std::wstring before = Xml(contents);
    contents.MatchAttributes(L"A3,PCL,Staple,Color");
    CHECK(Xml(contents) == before);
}
