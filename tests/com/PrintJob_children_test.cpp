// The children of a print job: properties, reading and writing.

#include "tests/support/RecordTest.h"

namespace {

template<class Child>
ComPtr<Child> Held(const ComPtr<IPrintJob>& job, HRESULT (STDMETHODCALLTYPE IPrintJob::*getter)(Child**)) {
    ComPtr<Child> child;
    REQUIRE_HR((job.Get()->*getter)(child.Put()), S_OK);
    return child;
}

std::wstring ContentsWith(LONG originals) {
    return L"<JobContents><JobCopyLines/><JobOriginals>" + std::to_wstring(originals) +
           L"</JobOriginals></JobContents>";
}

void Read(const ComPtr<IPrintJob>& job, std::wstring_view version, std::wstring_view elements) {
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", version, elements)), S_OK);
}

} // namespace

TEST_CASE("PrintJob_new_record_holds_empty_contents_and_no_other_child") {
    const auto job = CreatePrintJob();
    const auto contents = Held(job, &IPrintJob::get_JobContents);
    REQUIRE(contents);
    CHECK_TEXT(Text(contents, &IJobContents::get_Xml), Text(CreateJobContents(), &IJobContents::get_Xml));
    CHECK_FALSE(Held(job, &IPrintJob::get_PageCounterJobContents));
    CHECK_FALSE(Held(job, &IPrintJob::get_WindowsPrintInfo));
    CHECK_FALSE(Held(job, &IPrintJob::get_PolicyResults));
}

TEST_CASE("PrintJob_child_getters_give_the_held_object_itself") {
    const auto job = CreatePrintJob();
    const auto contents = CreateJobContents();
    REQUIRE_HR(job->put_JobContents(contents.Get()), S_OK);
    CHECK(Held(job, &IPrintJob::get_JobContents).Get() == contents.Get());
    REQUIRE_HR(job->put_PageCounterJobContents(contents.Get()), S_OK);
    CHECK(Held(job, &IPrintJob::get_PageCounterJobContents).Get() == contents.Get());
    const auto info = CreateWindowsPrintInfo();
    REQUIRE_HR(job->put_WindowsPrintInfo(info.Get()), S_OK);
    CHECK(Held(job, &IPrintJob::get_WindowsPrintInfo).Get() == info.Get());
    const auto results = CreatePolicyResults();
    REQUIRE_HR(job->put_PolicyResults(results.Get()), S_OK);
    CHECK(Held(job, &IPrintJob::get_PolicyResults).Get() == results.Get());

    // The job writes changes made through the child.
    REQUIRE_HR(Held(job, &IPrintJob::get_JobContents)->put_JobOriginals(7), S_OK);
    CHECK(Occurrences(Text(job, &IPrintJob::get_Xml), L"<JobOriginals>7</JobOriginals>") == 2);
}

TEST_CASE("PrintJob_null_is_refused_for_the_contents_and_clears_the_other_children") {
    const auto job = CreatePrintJob();
    const auto contents = Held(job, &IPrintJob::get_JobContents);
    CHECK_HR(job->put_JobContents(nullptr), E_POINTER);
    CHECK(Held(job, &IPrintJob::get_JobContents).Get() == contents.Get());

    REQUIRE_HR(job->put_PageCounterJobContents(contents.Get()), S_OK);
    REQUIRE_HR(job->put_WindowsPrintInfo(CreateWindowsPrintInfo().Get()), S_OK);
    REQUIRE_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    CHECK_HR(job->put_PageCounterJobContents(nullptr), S_OK);
    CHECK_HR(job->put_WindowsPrintInfo(nullptr), S_OK);
    CHECK_HR(job->put_PolicyResults(nullptr), S_OK);
    CHECK_FALSE(Held(job, &IPrintJob::get_PageCounterJobContents));
    CHECK_FALSE(Held(job, &IPrintJob::get_WindowsPrintInfo));
    CHECK_FALSE(Held(job, &IPrintJob::get_PolicyResults));
}

TEST_CASE("PrintJob_reads_its_contents_into_the_held_child") {
    const auto job = CreatePrintJob();
    const auto before = Held(job, &IPrintJob::get_JobContents);
    Read(job, L"7.26", ContentsWith(5));
    CHECK(Held(job, &IPrintJob::get_JobContents).Get() == before.Get());
    CHECK(Value(before, &IJobContents::get_JobOriginals) == 5);
}

TEST_CASE("PrintJob_without_contents_gets_a_fresh_empty_child") {
    const auto job = CreatePrintJob();
    Read(job, L"7.26", ContentsWith(5));
    const auto before = Held(job, &IPrintJob::get_JobContents);
    Read(job, L"7.26", L"");
    const auto after = Held(job, &IPrintJob::get_JobContents);
    REQUIRE(after);
    CHECK(after.Get() != before.Get());
    CHECK(Value(after, &IJobContents::get_JobOriginals) == 0);
    CHECK(Value(before, &IJobContents::get_JobOriginals) == 5); // now owned by the caller only
}

TEST_CASE("PrintJob_page_counter_contents_are_created_kept_and_released_by_reading") {
    const auto job = CreatePrintJob();
    const auto info = [](const std::wstring& content) {
        return L"<PageCounterInfo>" + content + L"</PageCounterInfo>";
    };
    Read(job, L"7.26", info(ContentsWith(5)));
    const auto first = Held(job, &IPrintJob::get_PageCounterJobContents);
    REQUIRE(first);
    CHECK(Value(first, &IJobContents::get_JobOriginals) == 5);
    CHECK(Value(Held(job, &IPrintJob::get_JobContents), &IJobContents::get_JobOriginals) == 0);

    Read(job, L"7.26", info(ContentsWith(6)));
    CHECK(Held(job, &IPrintJob::get_PageCounterJobContents).Get() == first.Get());
    CHECK(Value(first, &IJobContents::get_JobOriginals) == 6);

    Read(job, L"7.26", info(L""));
    CHECK_FALSE(Held(job, &IPrintJob::get_PageCounterJobContents));
    Read(job, L"7.26", info(ContentsWith(7)));
    const auto second = Held(job, &IPrintJob::get_PageCounterJobContents);
    REQUIRE(second);
    CHECK(second.Get() != first.Get());
    Read(job, L"7.26", L"");
    CHECK_FALSE(Held(job, &IPrintJob::get_PageCounterJobContents));
}

TEST_CASE("PrintJob_page_counter_texts_are_read_inside_their_element_only") {
    const auto job = PrintJobOfVersion(
        L"7.26", L"<PageCounterErrorMessage>outside</PageCounterErrorMessage>"
                 L"<PageCounterInfo><PageCounterResult>r</PageCounterResult>"
                 L"<PageCounterErrorMessage>e &lt;</PageCounterErrorMessage></PageCounterInfo>"
                 L"<WindowsPrintInfo><JobInfoPages>3</JobInfoPages></WindowsPrintInfo>");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterErrorMessage), L"e <");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterResult), L"r");
    REQUIRE(Held(job, &IPrintJob::get_WindowsPrintInfo)); // elements after it are read too
    Read(job, L"7.26", L"<PageCounterInfo/><PageCounterResult>outside</PageCounterResult>");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterErrorMessage), L"");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterResult), L"");
    REQUIRE_HR(Put(job, &IPrintJob::put_PageCounterResult, L"r"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_PageCounterErrorMessage, L"e"), S_OK);
    Read(job, L"7.26", L"");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterErrorMessage), L"");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterResult), L"");
}

TEST_CASE("PrintJob_contents_of_the_page_counter_are_not_taken_for_the_job_s") {
    const auto job = PrintJobOfVersion(L"7.26", L"<PageCounterInfo>" + ContentsWith(5) +
                                                    L"</PageCounterInfo>" + ContentsWith(6));
    CHECK(Value(Held(job, &IPrintJob::get_JobContents), &IJobContents::get_JobOriginals) == 6);
    CHECK(Value(Held(job, &IPrintJob::get_PageCounterJobContents), &IJobContents::get_JobOriginals) == 5);
}

TEST_CASE("PrintJob_PageCounterInfoXml_gives_the_page_counter_s_part") {
    const auto job = CreatePrintJob();
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterInfoXml),
               L"<PageCounterInfo><PageCounterErrorMessage/><PageCounterResult/></PageCounterInfo>");
    REQUIRE_HR(Put(job, &IPrintJob::put_PageCounterErrorMessage, L"a > b"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_PageCounterResult, L"partial"), S_OK);
    const auto contents = CreateJobContents();
    REQUIRE_HR(job->put_PageCounterJobContents(contents.Get()), S_OK);
    const std::wstring expected = L"<PageCounterInfo>" + Text(contents, &IJobContents::get_Xml) +
                                  L"<PageCounterErrorMessage>a &gt; b</PageCounterErrorMessage>"
                                  L"<PageCounterResult>partial</PageCounterResult></PageCounterInfo>";
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterInfoXml), expected);
    CHECK_HAS(Text(job, &IPrintJob::get_Xml), expected);
    CHECK_HAS(Text(PrintJobOfVersion(L"3.5"), &IPrintJob::get_Xml), L"<PageCounterInfo>");
}

TEST_CASE("PrintJob_windows_print_info_is_created_kept_and_released_by_reading") {
    const auto job = CreatePrintJob();
    Read(job, L"3.5", L"<WindowsPrintInfo><JobInfoPages>5</JobInfoPages></WindowsPrintInfo>");
    const auto first = Held(job, &IPrintJob::get_WindowsPrintInfo);
    REQUIRE(first);
    CHECK(Value(first, &IWindowsPrintInfo::get_JobInfoPages) == 5);
    Read(job, L"7.26", L"<WindowsPrintInfo/>");
    CHECK(Held(job, &IPrintJob::get_WindowsPrintInfo).Get() == first.Get());
    CHECK(Value(first, &IWindowsPrintInfo::get_JobInfoPages) == 0);
    Read(job, L"7.26", L"");
    CHECK_FALSE(Held(job, &IPrintJob::get_WindowsPrintInfo));
}

TEST_CASE("PrintJob_policy_results_are_created_kept_and_released_by_reading") {
    const auto job = CreatePrintJob();
    const std::wstring element = L"<PolicyResults Version=\"4.0\"><PolicyId>5</PolicyId></PolicyResults>";
    Read(job, L"4.0", element);
    const auto first = Held(job, &IPrintJob::get_PolicyResults);
    REQUIRE(first);
    CHECK(Value(first, &IPolicyResults::get_PolicyId) == 5);
    Read(job, L"7.26", L"<PolicyResults Version=\"4.0\"/>");
    CHECK(Held(job, &IPrintJob::get_PolicyResults).Get() == first.Get());
    CHECK(Value(first, &IPolicyResults::get_PolicyId) == 0);
    Read(job, L"7.26", L"");
    CHECK_FALSE(Held(job, &IPrintJob::get_PolicyResults));
    Read(job, L"7.26", element);
    REQUIRE(Held(job, &IPrintJob::get_PolicyResults));
    Read(job, L"3.9", element); // not in this version
    CHECK_FALSE(Held(job, &IPrintJob::get_PolicyResults));
}

TEST_CASE("PrintJob_writes_policy_results_from_their_version_on") {
    const auto job = PrintJobOfVersion(L"3.9");
    REQUIRE_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    CHECK_HAS_NOT(Text(job, &IPrintJob::get_Xml), L"PolicyResults ");
    REQUIRE_HR(job->put_DeviceId(1), S_OK); // raises the version to 4.2
    CHECK_HAS(Text(job, &IPrintJob::get_Xml), L"<PolicyResults ");
}

TEST_CASE("PrintJob_children_that_cannot_be_read_fail_with_their_own_messages") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", L"<JobContents/>")), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"[CJobContentsImpl::put_Xml] Invalid Xml fragment");
    CHECK_HR(Put(job, &IPrintJob::put_Xml,
                 RecordText(L"PrintJob", L"7.26", L"<PageCounterInfo><JobContents/></PageCounterInfo>")),
             E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"[CJobContentsImpl::put_Xml] Invalid Xml fragment");
    CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", L"<PolicyResults/>")), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(),
               L"Version has fewer than two components or more than four components.");
}

TEST_CASE("PrintJob_failing_child_keeps_what_was_read_before_it") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_WindowsPrintInfo(CreateWindowsPrintInfo().Get()), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_PageCounterResult, L"old"), S_OK);
    CHECK_HR(Put(job, &IPrintJob::put_Xml,
                 RecordText(L"PrintJob", L"7.26",
                            L"<PageCounterInfo><PageCounterResult>new</PageCounterResult></PageCounterInfo>"
                            L"<JobContents/><JobName>new</JobName>")),
             E_FAIL);
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"new");
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterResult), L"old");
    CHECK(Held(job, &IPrintJob::get_WindowsPrintInfo));
}

// A start tag ends at its first ">", also inside a quoted value. The value then extends to the next quote,
// but not beyond the child's own text.
TEST_CASE("PrintJob_child_reads_no_value_beyond_its_own_text") {
    const std::wstring results = L"<PolicyResults Version=\"4.0\"><RuleViolations>"
                                 L"<Rule TriggerId=\"1\" Action=\"x></Rule></RuleViolations></PolicyResults>";
    const auto job = CreatePrintJob();
    Read(job, L"7.26", results + L"<Later a=\"1\"/>");
    const auto held = Text(Held(job, &IPrintJob::get_PolicyResults), &IPolicyResults::get_Xml);
    CHECK_HAS(held, L" Action=\"x&gt;&lt;/Rule&gt;&lt;/RuleViolations&gt;&lt;/PolicyResults&gt;\"/>");
    const auto alone = CreatePolicyResults();
    REQUIRE_HR(Put(alone, &IPolicyResults::put_Xml, results), S_OK);
    CHECK_TEXT(held, Text(alone, &IPolicyResults::get_Xml));
}

TEST_CASE("PrintJob_keeps_its_children_alive_until_its_own_end") {
    ComPtr<IJobContents> contents;
    {
        const auto job = CreatePrintJob();
        REQUIRE_HR(job->get_JobContents(contents.Put()), S_OK);
    }
    CHECK_HR(contents->put_JobOriginals(3), S_OK);
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 3);
}
