#include "tests/support/RecordTest.h"

namespace {

ComPtr<IJobContents> JobContentsFrom(std::wstring_view xml) {
    auto contents = CreateJobContents();
    REQUIRE_HR(Put(contents, &IJobContents::put_Xml, xml), S_OK);
    return contents;
}

ComPtr<ICopyLines> Lines(const ComPtr<IJobContents>& contents) {
    ComPtr<ICopyLines> lines;
    REQUIRE_HR(contents->get_JobCopyLines(lines.Put()), S_OK);
    REQUIRE(lines);
    return lines;
}

constexpr wchar_t InvalidFragment[] = L"[CJobContentsImpl::put_Xml] Invalid Xml fragment";

/// The results of MatchAttributes, from garbage out-values.
struct Match {
    std::wstring paperSize, paperDimensions, jobPdl, jobFinishing, pageAttributes, unmatched;
    bool isColor = false;

    Match(const ComPtr<IJobContents>& contents, std::wstring_view attributes) {
        auto* const garbage = reinterpret_cast<BSTR>(0x1234);
        BSTR texts[6] = {garbage, garbage, garbage, garbage, garbage, garbage};
        VARIANT_BOOL color = 0x55;
        REQUIRE_HR(contents->MatchAttributes(UniqueBstr(attributes).Get(), &texts[0], &texts[1], &texts[2],
                                             &texts[3], &texts[4], &color, &texts[5]),
                   S_OK);
        std::wstring* const results[6] = {&paperSize,    &paperDimensions, &jobPdl,
                                          &jobFinishing, &pageAttributes,  &unmatched};
        for (int i = 0; i < 6; ++i) {
            REQUIRE(texts[i] != garbage);
            REQUIRE(texts[i] != nullptr);
            results[i]->assign(texts[i], SysStringLen(texts[i]));
            SysFreeString(texts[i]);
        }
        REQUIRE((color == VARIANT_TRUE || color == VARIANT_FALSE));
        isColor = color == VARIANT_TRUE;
    }
};

} // namespace

TEST_CASE("JobContents_object_new_Xml_has_empty_copy_lines_as_its_first_child") {
    const std::wstring xml = Text(CreateJobContents(), &IJobContents::get_Xml);
    const std::wstring start = L"<JobContents xmlns=\"";
    const std::wstring rest = L"/OutputManagement/JobContents\" Version=\"4.0\"><JobCopyLines></JobCopyLines>"
                              L"<JobOriginals>0</JobOriginals><JobCopies>0</JobCopies><JobPdl/>"
                              L"<JobFinishing/></JobContents>";
    INFO(Narrow(xml));
    REQUIRE(xml.size() > start.size() + rest.size());
    CHECK_TEXT(xml.substr(0, start.size()), start);
    CHECK_TEXT(xml.substr(xml.size() - rest.size()), rest);
    CHECK(xml.substr(start.size(), xml.size() - start.size() - rest.size()).find(L'"') == std::wstring::npos);
}

TEST_CASE("JobContents_object_properties_are_stored_independently") {
    const Property<IJobContents, BSTR> texts[] = {
        PROPERTY(IJobContents, JobPdl),
        PROPERTY(IJobContents, JobFinishing),
    };
    const auto contents = CreateJobContents();
    CheckTextProperties(contents, texts);
    contents->put_JobOriginals(2);
    contents->put_JobCopies(3);
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 2);
    CHECK(Value(contents, &IJobContents::get_JobCopies) == 3);
}

TEST_CASE("JobContents_object_null_result_of_a_method_is_refused_before_any_work") {
    const auto contents = JobContentsFrom(L"<JobContents><JobCopyLines/><JobPdl>PCL</JobPdl></JobContents>");
    CHECK_HR(contents->GenerateGeneralContentsFromPageCounterInfo(UniqueBstr(L"EMF").Get(), 5, 6,
                                                                  VARIANT_FALSE, nullptr),
             E_POINTER);
    CHECK_TEXT(TakeErrorDescription(), L"<none>");
    CHECK_TEXT(Text(contents, &IJobContents::get_JobPdl), L"PCL");
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 0);

    auto* const garbage = reinterpret_cast<BSTR>(0x1234);
    BSTR text = garbage;
    VARIANT_BOOL match = 0x55;
    CHECK_HR(contents->DoAttributesMatch(nullptr, nullptr, &match), E_POINTER);
    CHECK_HR(contents->DoAttributesMatch(nullptr, &text, nullptr), E_POINTER);
    CHECK(text == garbage);

    for (int missing = 0; missing < 7; ++missing) {
        INFO(missing);
        BSTR texts[6] = {garbage, garbage, garbage, garbage, garbage, garbage};
        BSTR* out[6];
        for (int i = 0; i < 6; ++i)
            out[i] = i == missing ? nullptr : &texts[i];
        VARIANT_BOOL color = 0x55;
        CHECK_HR(contents->MatchAttributes(UniqueBstr(L"A4").Get(), out[0], out[1], out[2], out[3], out[4],
                                           missing == 6 ? nullptr : &color, out[5]),
                 E_POINTER);
        CHECK_TEXT(TakeErrorDescription(), L"<none>");
        CHECK(color == 0x55);
        for (BSTR untouched : texts)
            CHECK(untouched == garbage);
    }
}

TEST_CASE("JobContents_object_Xml_is_read_as_it_was_written") {
    const auto contents = CreateJobContents();
    REQUIRE_HR(contents->GenerateContentsFromPageCounterInfo(
                   UniqueBstr(L"A4,Duplex,B&W,PostScript,Staple").Get(), 12, 2, 24, 12),
               S_OK);
    const std::wstring xml = Text(contents, &IJobContents::get_Xml);
    CHECK_HAS(xml, L" Version=\"4.0\"><JobCopyLines><CopyLine><PaperSize>A4</PaperSize>"
                   L"<PaperDimensions>2100,2970</PaperDimensions><Attributes>Duplex,B&amp;W</Attributes>"
                   L"<Sheets>12</Sheets><PagesBW>24</PagesBW><PagesColor>0</PagesColor>"
                   L"<PagesBlank>0</PagesBlank></CopyLine></JobCopyLines><JobOriginals>12</JobOriginals>"
                   L"<JobCopies>2</JobCopies><JobPdl>PostScript</JobPdl><JobFinishing>Staple</JobFinishing>"
                   L"</JobContents>");
    CHECK_TEXT(Text(JobContentsFrom(xml), &IJobContents::get_Xml), xml);
}

TEST_CASE("JobContents_object_Xml_version_is_kept") {
    const auto version = [](const wchar_t* attribute) {
        return Text(
            JobContentsFrom(std::wstring(L"<JobContents") + attribute + L"><JobCopyLines/></JobContents>"),
            &IJobContents::get_Version);
    };
    CHECK_TEXT(version(L""), L"4.0");
    CHECK_TEXT(version(L" Version=\"\""), L"4.0");
    CHECK_TEXT(version(L" Version=\"3.5\""), L"3.5");
    CHECK_TEXT(version(L" Version=\"5.6.7\""), L"5.6.7");
    CHECK_TEXT(version(L" Version=\"5.6.7.8\""), L"5.6.7.8");
    CHECK_HAS(Text(JobContentsFrom(L"<JobContents Version=\"5.6.7.8\"><JobCopyLines/></JobContents>"),
                   &IJobContents::get_Xml),
              L" Version=\"5.6.7.8\"><JobCopyLines>");

    const auto contents = JobContentsFrom(L"<JobContents Version=\"3.5\"><JobCopyLines/></JobContents>");
    CHECK_HR(Put(contents, &IJobContents::put_Xml, L"<JobContents><JobCopyLines/></JobContents>"), S_OK);
    CHECK_TEXT(Text(contents, &IJobContents::get_Version), L"4.0");
}

TEST_CASE("JobContents_object_Xml_children_are_read_in_any_order_and_reset_when_absent") {
    const auto contents =
        JobContentsFrom(L"<JobContents><JobFinishing>f</JobFinishing><JobPdl>p</JobPdl>"
                        L"<JobCopies>3</JobCopies><JobOriginals>2</JobOriginals><JobCopyLines>"
                        L"<CopyLine><PaperSize>A4</PaperSize><PagesBW>1</PagesBW></CopyLine>"
                        L"<CopyLine><PaperSize>A4</PaperSize><PagesColor>1</PagesColor></CopyLine>"
                        L"</JobCopyLines></JobContents>");
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 2);
    CHECK(Value(contents, &IJobContents::get_JobCopies) == 3);
    CHECK_TEXT(Text(contents, &IJobContents::get_JobPdl), L"p");
    CHECK_TEXT(Text(contents, &IJobContents::get_JobFinishing), L"f");
    CHECK(Value(Lines(contents), &ICopyLines::get_Count) == 1);
    CHECK(Value(contents, &IJobContents::get_TotalPages) == 2);

    CHECK_HR(Put(contents, &IJobContents::put_Xml,
                 L"<JobContents><JobCopyLines/><JobCopies>-3</JobCopies></JobContents>"),
             S_OK);
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 0);
    CHECK(Value(contents, &IJobContents::get_JobCopies) == 0);
    CHECK_TEXT(Text(contents, &IJobContents::get_JobPdl), L"");
    CHECK_TEXT(Text(contents, &IJobContents::get_JobFinishing), L"");
    CHECK(Value(contents, &IJobContents::get_TotalPages) == 0);
}

TEST_CASE("JobContents_object_Xml_without_its_element_fails_with_the_layers_text") {
    const auto contents = JobContentsFrom(L"<JobContents><JobCopyLines/><JobPdl>p</JobPdl></JobContents>");
    for (const wchar_t* xml : {L"", L"<x/>", L"<jobcontents/>", L"<JobContents>"}) {
        INFO(Narrow(xml));
        CHECK_HR(Put(contents, &IJobContents::put_Xml, xml), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), InvalidFragment);
        CHECK_TEXT(Text(contents, &IJobContents::get_JobPdl), L"p");
    }
    CHECK_HR(contents->put_Xml(nullptr), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), InvalidFragment);
}

TEST_CASE("JobContents_object_Xml_without_copy_lines_fails_after_reading_the_rest") {
    const auto contents =
        JobContentsFrom(L"<JobContents><JobCopyLines><CopyLine/></JobCopyLines></JobContents>");
    CHECK_HR(
        Put(contents, &IJobContents::put_Xml,
            L"<JobContents Version=\"4.1\"><JobOriginals>2</JobOriginals><JobPdl>p</JobPdl></JobContents>"),
        E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), InvalidFragment);
    CHECK_TEXT(Text(contents, &IJobContents::get_Version), L"4.1");
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 2);
    CHECK_TEXT(Text(contents, &IJobContents::get_JobPdl), L"p");
    CHECK(Value(Lines(contents), &ICopyLines::get_Count) == 0);
}

TEST_CASE("JobContents_object_JobCopyLines_is_a_copy") {
    const auto contents = JobContentsFrom(L"<JobContents><JobCopyLines><CopyLine><PaperSize>A4</PaperSize>"
                                          L"<PagesBW>5</PagesBW></CopyLine></JobCopyLines></JobContents>");
    const auto lines = Lines(contents);
    CHECK(lines.Get() != Lines(contents).Get());
    CHECK_HR(lines->Clear(), S_OK);
    CHECK(Value(Lines(contents), &ICopyLines::get_Count) == 1);
    CHECK(Value(contents, &IJobContents::get_TotalPages) == 5);
}

TEST_CASE("JobContents_object_totals_are_those_of_the_copy_lines") {
    const auto contents = JobContentsFrom(
        L"<JobContents><JobCopyLines>"
        L"<CopyLine><PaperSize>A4</PaperSize><Attributes>NoDuplex</Attributes><PagesBW>1</PagesBW>"
        L"<PagesColor>2</PagesColor><PagesBlank>3</PagesBlank></CopyLine>"
        L"<CopyLine><PaperSize>A3</PaperSize><PagesBW>10</PagesBW></CopyLine></JobCopyLines></JobContents>");
    CHECK(Value(contents, &IJobContents::get_TotalPages) == 16);
    CHECK(Value(contents, &IJobContents::get_TotalPagesBW) == 11);
    CHECK(Value(contents, &IJobContents::get_TotalPagesColor) == 2);
    CHECK(Value(contents, &IJobContents::get_ContainsDuplex) == VARIANT_TRUE);
}

TEST_CASE("JobContents_object_database_codes_come_from_the_catalogue") {
    const auto contents = CreateJobContents();
    const auto pdl = [&](const wchar_t* name) {
        REQUIRE_HR(Put(contents, &IJobContents::put_JobPdl, name), S_OK);
        return Value(contents, &IJobContents::get_DBPdl);
    };
    CHECK(pdl(L"EMF") == 10);
    CHECK(pdl(L"postscript") == 6);
    CHECK(pdl(L"unknown") == 1); // the default
    CHECK(pdl(L"") == 1);
    const auto finishing = [&](const wchar_t* words) {
        REQUIRE_HR(Put(contents, &IJobContents::put_JobFinishing, words), S_OK);
        return Value(contents, &IJobContents::get_DBFinishing);
    };
    CHECK(finishing(L"Staple,punch,Fold") == (1 | 2048 | 65536));
    CHECK(finishing(L"Staple,unknown") == 1);
    CHECK(finishing(L"unknown") == 0);
    CHECK(finishing(L"") == 0);
}

TEST_CASE("JobContents_object_database_text_counts_blank_pages_as_black_and_white") {
    const auto contents = JobContentsFrom(
        L"<JobContents><JobCopyLines><CopyLine><PaperSize>Letter</PaperSize><Attributes>Duplex</Attributes>"
        L"<Sheets>4</Sheets><PagesBW>3</PagesBW><PagesColor>1</PagesColor><PagesBlank>2</PagesBlank></"
        L"CopyLine>"
        L"<CopyLine><PaperSize>Bogus</PaperSize><Sheets>1</Sheets></CopyLine></JobCopyLines></JobContents>");
    CHECK_TEXT(Text(contents, &IJobContents::get_DBCopyLines), L"0,0,0,1,0;2,5,1,4,2");
}

TEST_CASE("JobContents_object_pdl_is_EMF_when_it_contains_the_capital_letters") {
    const auto contents = CreateJobContents();
    const auto isEmf = [&](const wchar_t* pdl) {
        REQUIRE_HR(Put(contents, &IJobContents::put_JobPdl, pdl), S_OK);
        return Value(contents, &IJobContents::get_IsPdlEMF);
    };
    CHECK(isEmf(L"EMF") == VARIANT_TRUE);
    CHECK(isEmf(L"NT EMF 1.008") == VARIANT_TRUE);
    CHECK(isEmf(L"xEMFy") == VARIANT_TRUE);
    CHECK(isEmf(L"emf") == VARIANT_FALSE);
    CHECK(isEmf(L"E M F") == VARIANT_FALSE);
    CHECK(isEmf(L"") == VARIANT_FALSE);
}

TEST_CASE("JobContents_object_MatchAttributes_sorts_the_words") {
    const auto contents = CreateJobContents();
    const Match match(contents, L"iso a4,Color,DUPLEX,PCL6,EMF,staple,Punch,tonersave,Whatever");
    CHECK_TEXT(match.paperSize, L"iso a4");
    CHECK_TEXT(match.paperDimensions, L"2100,2970");
    CHECK_TEXT(match.jobPdl, L"PCL6");
    CHECK_TEXT(match.jobFinishing, L"Staple,Punch");
    CHECK_TEXT(match.pageAttributes, L"Duplex,B&W,TonerSave");
    CHECK_TEXT(match.unmatched, L"EMF,Whatever");
    CHECK(match.isColor);
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 0);
    CHECK_TEXT(Text(contents, &IJobContents::get_JobPdl), L"");
}

TEST_CASE("JobContents_object_MatchAttributes_without_words_gives_the_defaults") {
    const Match match(CreateJobContents(), L"");
    CHECK_TEXT(match.paperSize, L"A4");
    CHECK_TEXT(match.paperDimensions, L"2100,2970");
    CHECK_TEXT(match.jobPdl, L"RAW");
    CHECK_TEXT(match.jobFinishing, L"");
    CHECK_TEXT(match.pageAttributes, L"Simplex,B&W");
    CHECK_TEXT(match.unmatched, L"");
    CHECK_FALSE(match.isColor);
}

TEST_CASE("JobContents_object_MatchAttributes_adds_default_sides_only_with_the_flag") {
    const auto contents = CreateJobContents();
    CHECK_HR(contents->put_GenerateDefaultPageAttributes(VARIANT_FALSE), S_OK);
    CHECK_TEXT(Match(contents, L"A4,Draft").pageAttributes, L"Draft");
    CHECK_HR(contents->put_GenerateDefaultPageAttributes(VARIANT_TRUE), S_OK);
    CHECK_TEXT(Match(contents, L"A4,Draft").pageAttributes, L"Simplex,B&W,Draft");
}

TEST_CASE("JobContents_object_MatchAttributes_returns_the_second_word_of_a_pair_and_reads_Mono") {
    const auto contents = CreateJobContents();
    const Match twice(contents, L"A4,Duplex,duplex");
    CHECK_TEXT(twice.pageAttributes, L"Duplex,B&W");
    CHECK_TEXT(twice.unmatched, L"duplex");
    CHECK_HR(contents->put_GenerateDefaultPageAttributes(VARIANT_FALSE), S_OK);
    const Match mono(contents, L"A4,Mono");
    CHECK_TEXT(mono.pageAttributes, L"B&W");
    CHECK_TEXT(mono.unmatched, L"");
    CHECK_TEXT(Match(contents, L"A4,mono").unmatched, L"mono");
}

TEST_CASE("JobContents_object_DoAttributesMatch_is_false_with_unmatched_words") {
    const auto contents = CreateJobContents();
    const auto matches = [&](const wchar_t* attributes, const wchar_t* expectedLeft) {
        BSTR left = reinterpret_cast<BSTR>(0x1234);
        VARIANT_BOOL match = 0x55;
        REQUIRE_HR(contents->DoAttributesMatch(UniqueBstr(attributes).Get(), &left, &match), S_OK);
        REQUIRE(left != nullptr);
        CHECK_TEXT(std::wstring(left, SysStringLen(left)), expectedLeft);
        SysFreeString(left);
        return match;
    };
    CHECK(matches(L"A4,Duplex,Color,PCL6,Staple", L"") == VARIANT_TRUE);
    CHECK(matches(L"", L"") == VARIANT_TRUE);
    CHECK(matches(L"A4,PCL6,PDF", L"PDF") == VARIANT_FALSE);
    CHECK(matches(L"x,A4,y", L"x,y") == VARIANT_FALSE);
}
