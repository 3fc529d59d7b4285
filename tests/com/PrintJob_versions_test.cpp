// The effects of the version, and the order of reading.

#include "tests/support/RecordTest.h"

#include <iterator>

namespace {

/// An element that only some versions have, as a job with every field set writes it.
struct VersionedElement {
    const wchar_t* element;
    const wchar_t* since; ///< the first version that writes it
};

ComPtr<IPrintJob> FilledJob(std::wstring_view version) {
    auto job = PrintJobOfVersion(version);
    REQUIRE_HR(Put(job, &IPrintJob::put_UserDomainName, L"UD"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_DesktopUserName, L"DN"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_DesktopUserDomainName, L"DD"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_ApplicationName, L"AN"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_ApplicationDescription, L"AD"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_LogicalPrinterGuid, L"LP"), S_OK);
    REQUIRE_HR(job->put_FromSystemUser(VARIANT_TRUE), S_OK);
    REQUIRE_HR(job->put_VpnConnected(VARIANT_TRUE), S_OK);
    REQUIRE_HR(job->put_TonerCoverage(5), S_OK);
    REQUIRE_HR(job->put_DataSource(6), S_OK);
    REQUIRE_HR(job->put_PolicyResults(CreatePolicyResults().Get()), S_OK);
    return job;
}

/// Ascending versions, including each threshold and its neighbours.
constexpr const wchar_t* Versions[] = {L"3.5",   L"3.5.1", L"3.99",    L"4.0",   L"4.0.1",  L"4.1",
                                       L"4.1.9", L"4.2",   L"4.2.0.1", L"4.3",   L"4.9",    L"5.0.99",
                                       L"5.1",   L"5.9",   L"6.0",     L"7.0",   L"7.3.99", L"7.4",
                                       L"7.25",  L"7.26",  L"7.26.1",  L"7.100", L"10.0"};

int RankOf(std::wstring_view version) {
    for (int rank = 0; rank < static_cast<int>(std::size(Versions)); ++rank)
        if (version == Versions[rank])
            return rank;
    FAIL("not in the list of versions");
    return -1;
}

} // namespace

TEST_CASE("PrintJob_elements_are_written_from_their_version_on") {
    constexpr VersionedElement elements[] = {
        {L"<PolicyResults ", L"4.0"},
        {L"<LogTarget Type=\"LogicalPrinter\">LP</LogTarget>", L"4.2"},
        {L"<ApplicationName>AN</ApplicationName>", L"4.2"},
        {L"<VpnConnected>true</VpnConnected>", L"4.2"},
        {L"<Toner><Coverage>5</Coverage><Saving>-1</Saving></Toner>", L"4.3"},
        {L"<ApplicationDescription>AD</ApplicationDescription>", L"5.1"},
        {L"<DataSource>6</DataSource>", L"5.1"},
        {L"<UserDomainName>UD</UserDomainName>", L"6.0"},
        {L"<DesktopUserName>DN</DesktopUserName>", L"7.26"},
        {L"<DesktopUserDomainName>DD</DesktopUserDomainName>", L"7.26"},
    };
    for (const wchar_t* version : Versions) {
        const std::wstring xml = Text(FilledJob(version), &IPrintJob::get_Xml);
        INFO(Narrow(xml));
        for (const auto& element : elements) {
            INFO(Narrow(element.element));
            CHECK(Occurrences(xml, element.element) == (RankOf(version) >= RankOf(element.since) ? 1 : 0));
        }
        CHECK(Occurrences(xml, L"<LogicalPrinterGuid>LP</LogicalPrinterGuid>") ==
              (RankOf(version) < RankOf(L"4.2") ? 1 : 0));
        CHECK(Occurrences(xml, L"<FromSystemUser>true</FromSystemUser>") ==
              (RankOf(version) >= RankOf(L"7.4") ? 2 : 0));
    }
}

TEST_CASE("PrintJob_version_is_kept_with_its_components") {
    for (const wchar_t* version : Versions) {
        const auto job = PrintJobOfVersion(version);
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), version);
        CHECK_HAS(Text(job, &IPrintJob::get_Xml), L"/PrintJob\" Version=\"" + std::wstring(version) + L"\">");
    }
    CHECK_TEXT(Text(PrintJobOfVersion(L"7.26.3.4"), &IPrintJob::get_Version), L"7.26.3.4");
    CHECK_TEXT(Text(PrintJobOfVersion(L"7..26."), &IPrintJob::get_Version), L"7.26");
}

TEST_CASE("PrintJob_version_below_the_lowest_is_raised_to_it") {
    for (const wchar_t* text : {L"<PrintJob/>", L"<PrintJob Version=\"\"/>", L"<PrintJob Version='7.4'/>",
                                L"<PrintJob Version=\"2.0\"/>", L"<PrintJob Version=\"3.4.9\"/>",
                                L"<PrintJob Version=\"0.0\"/>", L"<PrintJob Version=\"3.5\"/>"}) {
        INFO(Narrow(text));
        CHECK_TEXT(Text(PrintJobFrom(text), &IPrintJob::get_Version), L"3.5");
    }
}

TEST_CASE("PrintJob_of_version_7_4_is_written_back_without_the_desktop_user") {
    const auto job = PrintJobOfVersion(L"7.4", L"<DesktopUserName>ignored</DesktopUserName>");
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"7.4");
    CHECK_HAS_NOT(Text(job, &IPrintJob::get_Xml), L"DesktopUser");
}

TEST_CASE("PrintJob_user_domain_and_desktop_user_keep_their_values_below_their_version") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(Put(job, &IPrintJob::put_UserDomainName, L"UD"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_DesktopUserName, L"DN"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_DesktopUserDomainName, L"DD"), S_OK);
    const std::wstring elements = L"<UserDomainName>x</UserDomainName><DesktopUserName>y</DesktopUserName>"
                                  L"<DesktopUserDomainName>z</DesktopUserDomainName>";
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"5.9", elements)), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_UserDomainName), L"UD");
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserName), L"DN");
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.25", elements)), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_UserDomainName), L"x");
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserName), L"DN");
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserDomainName), L"DD");
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", elements)), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserName), L"y");
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserDomainName), L"z");
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_UserDomainName), L"");
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserName), L"");
    CHECK_TEXT(Text(job, &IPrintJob::get_DesktopUserDomainName), L"");
}

TEST_CASE("PrintJob_other_fields_fall_back_to_their_defaults_below_their_version") {
    const std::wstring elements =
        L"<ApplicationName>AN</ApplicationName><VpnConnected>true</VpnConnected>"
        L"<Toner><Coverage>5</Coverage><Saving>6</Saving></Toner>"
        L"<ApplicationDescription>AD</ApplicationDescription><DataSource>7</DataSource>"
        L"<FromSystemUser>true</FromSystemUser>";
    const auto job = CreatePrintJob();
    for (const wchar_t* version : Versions) {
        INFO(Narrow(version));
        REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", elements)), S_OK);
        REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", version, elements)), S_OK);
        const int rank = RankOf(version);
        CHECK_TEXT(Text(job, &IPrintJob::get_ApplicationName), rank >= RankOf(L"4.2") ? L"AN" : L"");
        CHECK((Value(job, &IPrintJob::get_VpnConnected) != 0) == (rank >= RankOf(L"4.2")));
        CHECK(Value(job, &IPrintJob::get_TonerCoverage) == (rank >= RankOf(L"4.3") ? 5 : -1));
        CHECK(Value(job, &IPrintJob::get_TonerSaving) == (rank >= RankOf(L"4.3") ? 6 : -1));
        CHECK_TEXT(Text(job, &IPrintJob::get_ApplicationDescription), rank >= RankOf(L"5.1") ? L"AD" : L"");
        CHECK(Value(job, &IPrintJob::get_DataSource) == (rank >= RankOf(L"5.1") ? 7 : 0));
        CHECK((Value(job, &IPrintJob::get_FromSystemUser) != 0) == (rank >= RankOf(L"7.4")));
    }
}

TEST_CASE("PrintJob_missing_elements_reset_their_fields") {
    const auto job = PrintJobOfVersion(
        L"7.26",
        L"<JobGuid>a</JobGuid><CustomerCode>a</CustomerCode><UserName>a</UserName><JobSize>5</JobSize>"
        L"<JobName>a</JobName><JobFileName>a</JobFileName><JobDataType>a</JobDataType>"
        L"<LogTarget Type=\"Device\">5</LogTarget><MachineName>a</MachineName>"
        L"<ApplicationName>a</ApplicationName><VpnConnected>1</VpnConnected>"
        L"<Toner><Coverage>5</Coverage></Toner><ApplicationDescription>a</ApplicationDescription>"
        L"<DataSource>5</DataSource><FromSystemUser>1</FromSystemUser>"
        L"<JobContentsSource>5</JobContentsSource><JobContentsDiscardCount>5</JobContentsDiscardCount>");
    CHECK_TEXT(Text(job, &IPrintJob::get_MachineName), L"a");
    CHECK(Value(job, &IPrintJob::get_JobContentsDiscardCount) == 5);
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26")), S_OK);
    for (const auto getter : {&IPrintJob::get_JobGuid, &IPrintJob::get_CustomerCode, &IPrintJob::get_UserName,
                              &IPrintJob::get_JobName, &IPrintJob::get_JobFileName,
                              &IPrintJob::get_JobDataType, &IPrintJob::get_MachineName,
                              &IPrintJob::get_ApplicationName, &IPrintJob::get_ApplicationDescription})
        CHECK_TEXT(Text(job, getter), L"");
    CHECK(Value(job, &IPrintJob::get_JobSize) == 0);
    CHECK(Value(job, &IPrintJob::get_LogTargetType) == 0);
    CHECK(Value(job, &IPrintJob::get_VpnConnected) == VARIANT_FALSE);
    CHECK(Value(job, &IPrintJob::get_TonerCoverage) == -1);
    CHECK(Value(job, &IPrintJob::get_TonerSaving) == -1);
    CHECK(Value(job, &IPrintJob::get_DataSource) == 0);
    CHECK(Value(job, &IPrintJob::get_FromSystemUser) == VARIANT_FALSE);
    CHECK(Value(job, &IPrintJob::get_JobContentsSource) == 0);
    CHECK(Value(job, &IPrintJob::get_JobContentsDiscardCount) == 0);
}

TEST_CASE("PrintJob_counts_are_read_as_positive_values_and_zero_otherwise") {
    const struct {
        const wchar_t* text;
        LONG count;
        LONG dataSource; // any number
    } cases[] = {{L"17", 17, 17}, {L"-5", 0, -5},  {L"0", 0, 0},
                 {L"", 0, 0},     {L"x", 0, 0},    {L"12x", 12, 12},
                 {L" 7", 7, 7},   {L"0x10", 0, 0}, {L"2147483647", LONG_MAX, LONG_MAX},
                 {L"+3", 3, 3},   {L"1.9", 1, 1}};
    for (const auto& test : cases) {
        INFO(Narrow(test.text));
        const std::wstring value = test.text;
        const auto job = PrintJobOfVersion(L"7.26", L"<JobSize>" + value + L"</JobSize><DataSource>" + value +
                                                        L"</DataSource>" + L"<JobContentsSource>" + value +
                                                        L"</JobContentsSource><JobContentsDiscardCount>" +
                                                        value + L"</JobContentsDiscardCount>");
        CHECK(Value(job, &IPrintJob::get_JobSize) == test.count);
        CHECK(Value(job, &IPrintJob::get_JobContentsSource) == test.count);
        CHECK(Value(job, &IPrintJob::get_JobContentsDiscardCount) == test.count);
        CHECK(Value(job, &IPrintJob::get_DataSource) == test.dataSource);
    }
}

TEST_CASE("PrintJob_flags_are_read_from_true_and_1_only") {
    const struct {
        const wchar_t* text;
        VARIANT_BOOL flag;
    } cases[] = {{L"true", VARIANT_TRUE}, {L"TRUE", VARIANT_TRUE},   {L"True", VARIANT_TRUE},
                 {L"1", VARIANT_TRUE},    {L"0", VARIANT_FALSE},     {L"false", VARIANT_FALSE},
                 {L"yes", VARIANT_FALSE}, {L" true", VARIANT_FALSE}, {L"", VARIANT_FALSE},
                 {L"2", VARIANT_FALSE},   {L"-1", VARIANT_FALSE}};
    for (const auto& test : cases) {
        INFO(Narrow(test.text));
        const std::wstring value = test.text;
        const auto job =
            PrintJobOfVersion(L"7.26", L"<VpnConnected>" + value + L"</VpnConnected><FromSystemUser>" +
                                           value + L"</FromSystemUser>");
        CHECK(Value(job, &IPrintJob::get_VpnConnected) == test.flag);
        CHECK(Value(job, &IPrintJob::get_FromSystemUser) == test.flag);
    }
}

TEST_CASE("PrintJob_toner_parts_default_to_zero_inside_the_element_only") {
    const auto readToner = [](const wchar_t* element, LONG coverage, LONG saving) {
        INFO(Narrow(element));
        const auto job = PrintJobOfVersion(L"4.3", element);
        CHECK(Value(job, &IPrintJob::get_TonerCoverage) == coverage);
        CHECK(Value(job, &IPrintJob::get_TonerSaving) == saving);
    };
    readToner(L"", -1, -1);
    readToner(L"<Toner/>", 0, 0);
    readToner(L"<Toner></Toner>", 0, 0);
    readToner(L"<Toner><Coverage>7</Coverage></Toner>", 7, 0);
    readToner(L"<Toner><Saving>8</Saving></Toner>", 0, 8);
    readToner(L"<Toner><Saving>-8</Saving><Coverage>-7</Coverage></Toner>", -7, -8);
    readToner(L"<Coverage>7</Coverage><Saving>8</Saving>", -1, -1);
}

TEST_CASE("PrintJob_toner_is_written_when_its_coverage_is_known") {
    const auto job = PrintJobOfVersion(L"4.3");
    REQUIRE_HR(job->put_TonerSaving(9), S_OK);
    CHECK_HAS_NOT(Text(job, &IPrintJob::get_Xml), L"Toner");
    for (const LONG coverage : {0L, -2L, LONG_MAX}) {
        REQUIRE_HR(job->put_TonerCoverage(coverage), S_OK);
        // The schemas refuse a negative coverage, which has no meaning.
        CHECK_HAS(UncheckedText(job, &IPrintJob::get_Xml), L"<Toner><Coverage>" + std::to_wstring(coverage) +
                                                               L"</Coverage><Saving>9</Saving></Toner>");
    }
    REQUIRE_HR(job->put_TonerCoverage(-1), S_OK);
    CHECK_HAS_NOT(Text(job, &IPrintJob::get_Xml), L"Toner");
}

TEST_CASE("PrintJob_first_of_two_elements_wins") {
    const auto job = PrintJobOfVersion(
        L"7.26", L"<FromSystemUser>true</FromSystemUser><JobName>first</JobName><JobSize>1</JobSize>"
                 L"<FromSystemUser>false</FromSystemUser><JobName>second</JobName><JobSize>2</JobSize>"
                 L"<LogTarget Type=\"Device\">3</LogTarget><LogTarget Type=\"unknown\">4</LogTarget>"
                 L"<Toner><Coverage>5</Coverage><Coverage>6</Coverage></Toner><Toner/>");
    CHECK(Value(job, &IPrintJob::get_FromSystemUser) == VARIANT_TRUE);
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"first");
    CHECK(Value(job, &IPrintJob::get_JobSize) == 1);
    CHECK(Value(job, &IPrintJob::get_DeviceId) == 3);
    CHECK(Value(job, &IPrintJob::get_TonerCoverage) == 5);
}

TEST_CASE("PrintJob_failed_read_keeps_what_was_read_before_it") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(Put(job, &IPrintJob::put_JobName, L"old"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_MachineName, L"old"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_LogicalPrinterGuid, L"old"), S_OK);
    REQUIRE_HR(job->put_JobSize(1), S_OK);
    REQUIRE_HR(job->put_JobContentsSource(1), S_OK);
    CHECK_HR(Put(job, &IPrintJob::put_Xml,
                 L"<PrintJob Version=\"7.4\"><JobContentsSource>2</JobContentsSource>"
                 L"<LogTarget Type=\"x\">new</LogTarget><MachineName>new</MachineName><JobName>new</JobName>"
                 L"<JobSize>2</JobSize><JobTimeLocal>2010-03-04T05:06:07.089</JobTimeLocal></PrintJob>"),
             E_FAIL);
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"7.4");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"new");
    CHECK(Value(job, &IPrintJob::get_JobSize) == 2);
    CHECK(Value(job, &IPrintJob::get_JobTimeLocalMsec) == 89);
    CHECK_TEXT(Text(job, &IPrintJob::get_LogicalPrinterGuid), L"old");
    CHECK_TEXT(Text(job, &IPrintJob::get_MachineName), L"old");
    CHECK(Value(job, &IPrintJob::get_JobContentsSource) == 1);
}

TEST_CASE("PrintJob_read_that_fails_at_the_log_target_keeps_the_flag_of_the_system_user") {
    for (const VARIANT_BOOL flag : {VARIANT_FALSE, VARIANT_TRUE}) {
        const auto job = CreatePrintJob();
        REQUIRE_HR(job->put_FromSystemUser(flag), S_OK);
        const std::wstring other = flag ? L"false" : L"true";
        const std::wstring element = L"<FromSystemUser>" + other + L"</FromSystemUser>";
        CHECK_HR(Put(job, &IPrintJob::put_Xml,
                     RecordText(L"PrintJob", L"7.26", element + L"<LogTarget Type=\"x\"/>")),
                 E_FAIL);
        CHECK(Value(job, &IPrintJob::get_FromSystemUser) == flag);
        CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"7.26", element)), S_OK);
        CHECK(Value(job, &IPrintJob::get_FromSystemUser) != flag);
    }
}

TEST_CASE("PrintJob_text_of_an_older_peer_is_read_in_any_layout") {
    const auto job = PrintJobFrom(ReadTestFile("print_job_older_peer.xml"));
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"4.3");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobGuid), L"{3F2504E0}");
    CHECK_TEXT(Text(job, &IPrintJob::get_CustomerCode), L"<C&A> &amp;"); // CDATA is not unescaped
    CHECK_TEXT(Text(job, &IPrintJob::get_UserName), L" meyer ");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"a & b &#65; c");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobFileName), L"");
    CHECK_TEXT(Text(job, &IPrintJob::get_JobDataType), L"RAW");
    CHECK_TEXT(DateText(Value(job, &IPrintJob::get_JobTimeLocal)), L"2009-01-02T03:04:05");
    CHECK_TEXT(DateText(Value(job, &IPrintJob::get_JobTimeUtc)), L"2009-01-02T00:00:00");
    CHECK(Value(job, &IPrintJob::get_JobSize) == 77);
    CHECK_TEXT(Text(job, &IPrintJob::get_DeviceAddress), L"10.0.0.7");
    CHECK_TEXT(Text(job, &IPrintJob::get_MachineName), L""); // contains elements, so has no text
    CHECK(Value(job, &IPrintJob::get_VpnConnected) == VARIANT_TRUE);
    CHECK(Value(job, &IPrintJob::get_TonerCoverage) == 3);
    CHECK(Value(job, &IPrintJob::get_TonerSaving) == 4);
    CHECK_TEXT(Text(job, &IPrintJob::get_ApplicationDescription), L""); // not in this version
    CHECK_TEXT(Text(job, &IPrintJob::get_PageCounterResult), L"ok");
    ComPtr<IJobContents> contents;
    REQUIRE_HR(job->get_JobContents(contents.Put()), S_OK);
    CHECK(Value(contents, &IJobContents::get_JobOriginals) == 2);
    CHECK(Value(contents, &IJobContents::get_TotalPagesColor) == 5); // a line of the older form
    ComPtr<IWindowsPrintInfo> info;
    REQUIRE_HR(job->get_WindowsPrintInfo(info.Put()), S_OK);
    REQUIRE(info);
    CHECK(Value(info, &IWindowsPrintInfo::get_JobInfoPages) == 30);
    ComPtr<IPolicyResults> results;
    REQUIRE_HR(job->get_PolicyResults(results.Put()), S_OK);
    REQUIRE(results);
    CHECK_TEXT(Text(results, &IPolicyResults::get_RuleViolations), L"2,5");
}
