#include "tests/support/RecordTest.h"

namespace {

constexpr Property<IPrintJob, BSTR> Texts[] = {
    PROPERTY(IPrintJob, JobGuid),
    PROPERTY(IPrintJob, CustomerCode),
    PROPERTY(IPrintJob, UserName),
    PROPERTY(IPrintJob, UserDomainName),
    PROPERTY(IPrintJob, DesktopUserName),
    PROPERTY(IPrintJob, DesktopUserDomainName),
    PROPERTY(IPrintJob, JobName),
    PROPERTY(IPrintJob, JobFileName),
    PROPERTY(IPrintJob, JobDataType),
    PROPERTY(IPrintJob, MachineName),
    PROPERTY(IPrintJob, ApplicationName),
    PROPERTY(IPrintJob, ApplicationDescription),
    PROPERTY(IPrintJob, PageCounterErrorMessage),
    PROPERTY(IPrintJob, PageCounterResult),
};

constexpr Property<IPrintJob, LONG> Numbers[] = {
    PROPERTY(IPrintJob, JobTimeLocalMsec),
    PROPERTY(IPrintJob, JobSize),
    PROPERTY(IPrintJob, TonerCoverage),
    PROPERTY(IPrintJob, TonerSaving),
    PROPERTY(IPrintJob, DataSource),
    PROPERTY(IPrintJob, JobContentsSource),
    PROPERTY(IPrintJob, JobContentsDiscardCount),
};

constexpr Property<IPrintJob, VARIANT_BOOL> Flags[] = {
    PROPERTY(IPrintJob, FromSystemUser),
    PROPERTY(IPrintJob, VpnConnected),
};

} // namespace

TEST_CASE("PrintJob_new_record_writes_the_form_of_its_version") {
    const std::wstring xml = Text(CreatePrintJob(), &IPrintJob::get_Xml);
    CHECK_HAS(xml, L"<PrintJob xmlns=\"http://schemas.corvane.example/OutputManagement/PrintJob\" "
                   L"Version=\"7.26\">");
    CHECK(Occurrences(xml, L"<FromSystemUser>false</FromSystemUser>") == 2);
    CHECK_HAS(xml, L"<DesktopUserName/><DesktopUserDomainName/>");
    CHECK_HAS(xml, L"<LogTarget Type=\"None\"/>");
    CHECK_HAS_NOT(xml, L"Toner");
    CHECK_HAS(xml, L"</JobContents><PageCounterInfo><PageCounterErrorMessage/><PageCounterResult/>"
                   L"</PageCounterInfo></PrintJob>");
    CHECK_HAS_NOT(xml, L"WindowsPrintInfo");
    CHECK_HAS_NOT(xml, L"PolicyResults");
}

TEST_CASE("PrintJob_text_properties_are_stored_independently") {
    CheckTextProperties(CreatePrintJob(), Texts);
}

TEST_CASE("PrintJob_number_properties_are_stored_independently") {
    CheckNumberProperties(CreatePrintJob(), Numbers);
}

TEST_CASE("PrintJob_null_pointer_clears_an_earlier_error") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_Xml, L"<x/>"), E_FAIL);
    CHECK_HR(job->get_Xml(nullptr), E_POINTER);
    CHECK_TEXT(TakeErrorDescription(), L"<none>");
}

TEST_CASE("PrintJob_plain_putters_never_raise_the_version") {
    const auto job = PrintJobOfVersion(L"3.5");
    for (const auto& property : Texts)
        CHECK_HR(Put(job, property.put, L"text"), S_OK);
    for (const auto& property : Numbers)
        CHECK_HR((job.Get()->*property.put)(1), S_OK);
    for (const auto& property : Flags)
        CHECK_HR((job.Get()->*property.put)(VARIANT_TRUE), S_OK);
    CHECK_HR(job->put_JobTimeLocal(40000), S_OK);
    CHECK_HR(job->put_JobTimeUtc(40000), S_OK);
    CHECK_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    CHECK_HR(job->put_WindowsPrintInfo(CreateWindowsPrintInfo().Get()), S_OK);
    CHECK_HR(job->put_JobContents(CreateJobContents().Get()), S_OK);
    CHECK_HR(job->put_PageCounterJobContents(CreateJobContents().Get()), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"3.5");
}

TEST_CASE("PrintJob_Xml_without_its_root_fails_with_its_message") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_JobName, L"kept"), S_OK);
    for (const wchar_t* text : {L"", L"<x/>", L"text", L"<printjob/>", L"<x><PrintJob/></x>",
                                L"<x/><PrintJob/>", L"<PrintJob>", L"<PrintJob", L"<PrintJob></Printjob>",
                                L"<PrintJob><JobName></PrintJob>", L"<!-- <PrintJob/> -->"}) {
        INFO(Narrow(text));
        CHECK_HR(Put(job, &IPrintJob::put_Xml, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"PrintJob element is missing.");
    }
    CHECK_HR(job->put_Xml(nullptr), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"PrintJob element is missing.");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"kept");
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"7.26");
}

TEST_CASE("PrintJob_malformed_version_fails_with_its_message_and_changes_nothing") {
    constexpr const wchar_t* count = L"Version has fewer than two components or more than four components.";
    constexpr const wchar_t* component =
        L"A major, minor, build, or revision component is not a valid non-zero number.";
    const struct {
        const wchar_t* version;
        const wchar_t* message;
    } cases[] = {{L"7", count},        {L".", count},          {L"1.2.3.4.5", count}, {L"7.x", component},
                 {L"7.-2", component}, {L"7.0x10", component}, {L" 7.4", component},  {L"7.4 ", component}};
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_JobGuid, L"kept"), S_OK);
    for (const auto& test : cases) {
        INFO(Narrow(test.version));
        CHECK_HR(
            Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", test.version, L"<JobGuid>new</JobGuid>")),
            E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), test.message);
        CHECK_TEXT(Text(job, &IPrintJob::get_JobGuid), L"kept");
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"7.26");
    }
}

TEST_CASE("PrintJob_error_information_has_the_description_only") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_Xml, L"<x/>"), E_FAIL);
    ComPtr<IErrorInfo> info;
    REQUIRE_HR(GetErrorInfo(0, info.Put()), S_OK);
    UniqueBstr source;
    CHECK_HR(info->GetSource(source.Put()), S_OK);
    CHECK_TEXT(source.View(), L"");
}

TEST_CASE("PrintJob_failure_reaches_late_bound_callers_with_its_message") {
    const auto job = CreatePrintJob();
    VARIANT text{};
    const UniqueBstr xml(L"<x/>");
    text.vt = VT_BSTR;
    text.bstrVal = xml.Get();
    EXCEPINFO exception{};
    CHECK_HR(InvokeByName(job.Get(), L"Xml", DISPATCH_PROPERTYPUT, {text}, nullptr, &exception),
             DISP_E_EXCEPTION);
    CHECK_HR(exception.scode, E_FAIL);
    CHECK_TEXT(BstrView(exception.bstrDescription), L"PrintJob element is missing.");
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

TEST_CASE("PrintJob_reading_its_own_output_changes_nothing") {
    const auto job = CreatePrintJob();
    const std::wstring xml = Text(job, &IPrintJob::get_Xml);
    const auto copy = PrintJobFrom(xml);
    CHECK_TEXT(Text(copy, &IPrintJob::get_Xml), xml);
    CHECK_HR(Put(copy, &IPrintJob::put_Xml, xml), S_OK);
    CHECK_TEXT(Text(copy, &IPrintJob::get_Xml), xml);
}
