// The records' exact XML. Each file of data/golden is written by hand: a record with these values must write
// it, and keep it when it reads it.

#include "tests/support/RecordTest.h"

namespace {

std::wstring Golden(const std::string& name) {
    return ReadTestFile(("golden/" + name).c_str());
}

template<class Interface>
void SetNumber(const ComPtr<Interface>& record, HRESULT (STDMETHODCALLTYPE Interface::*putter)(LONG),
               LONG value) {
    REQUIRE_HR((record.Get()->*putter)(value), S_OK);
}
template<class Interface>
void SetText(const ComPtr<Interface>& record, HRESULT (STDMETHODCALLTYPE Interface::*putter)(BSTR),
             std::wstring_view value) {
    REQUIRE_HR(Put(record, putter, value), S_OK);
}

void FillJobContents(const ComPtr<IJobContents>& contents) {
    // Copy lines are set through XML only, and are written in the order of paper sizes.
    SetText(contents, &IJobContents::put_Xml,
            L"<JobContents><JobCopyLines>"
            L"<CopyLine><PaperSize>A4</PaperSize><PaperDimensions>2100,2970</PaperDimensions>"
            L"<Attributes>Duplex,B&amp;W</Attributes><Sheets>3</Sheets><PagesBW>4</PagesBW>"
            L"<PagesBlank>1</PagesBlank></CopyLine>"
            L"<CopyLine><PaperSize>A3</PaperSize><PaperDimensions>2970,4200</PaperDimensions>"
            L"<Attributes>Simplex</Attributes><Sheets>1</Sheets><PagesColor>1</PagesColor></CopyLine>"
            L"</JobCopyLines></JobContents>");
    SetNumber(contents, &IJobContents::put_JobOriginals, 5);
    SetNumber(contents, &IJobContents::put_JobCopies, 2);
    SetText(contents, &IJobContents::put_JobPdl, L"EMF");
    SetText(contents, &IJobContents::put_JobFinishing, L"Staple,Punch");
}

ComPtr<IJobContents> PageCounterContents() {
    auto contents = CreateJobContents();
    SetText(contents, &IJobContents::put_Xml, L"<JobContents Version=\"5.1\"><JobCopyLines/></JobContents>");
    SetNumber(contents, &IJobContents::put_JobOriginals, 6);
    SetNumber(contents, &IJobContents::put_JobCopies, 1);
    SetText(contents, &IJobContents::put_JobPdl, L"PCL");
    return contents;
}

ComPtr<IWindowsPrintInfo> FilledWindowsPrintInfo() {
    using Info = IWindowsPrintInfo;
    auto info = CreateWindowsPrintInfo();
    SetNumber(info, &Info::put_JobInfoPages, 30);
    SetNumber(info, &Info::put_JobInfoOriginals, 10);
    SetNumber(info, &Info::put_DevModeFields, 0x1900);
    SetNumber(info, &Info::put_DevModeOrientation, 2);
    SetNumber(info, &Info::put_DevModePaperSize, 9);
    SetNumber(info, &Info::put_DevModePaperLength, 2970);
    SetNumber(info, &Info::put_DevModePaperWidth, 2100);
    SetNumber(info, &Info::put_DevModeScale, 100);
    SetNumber(info, &Info::put_DevModeCopies, 3);
    SetNumber(info, &Info::put_DevModeDefaultSource, 15);
    SetNumber(info, &Info::put_DevModePrintQuality, -4);
    SetNumber(info, &Info::put_DevModeColor, 2);
    SetNumber(info, &Info::put_DevModeDuplex, 3);
    SetNumber(info, &Info::put_DevModeTumble, 1);
    SetNumber(info, &Info::put_DevModeXResolution, 600);
    SetNumber(info, &Info::put_DevModeYResolution, 1200);
    SetNumber(info, &Info::put_DevModeTTOption, 4);
    SetNumber(info, &Info::put_DevModeCollate, 5);
    SetText(info, &Info::put_DevModeFormName, L"A4 & more");
    SetNumber(info, &Info::put_DevModeMediaType, 256);
    SetNumber(info, &Info::put_AttributeInfoPagesPerSide, 4);
    SetNumber(info, &Info::put_AttributeInfoPageOrderFlags, 2);
    return info;
}

void Violate(const ComPtr<IPolicyResults>& results, LONG triggerId, std::wstring_view action) {
    REQUIRE_HR(results->AddRuleViolation(triggerId, UniqueBstr(action).Get()), S_OK);
}

ComPtr<IPolicyResults> FilledPolicyResults() {
    auto results = CreatePolicyResults();
    SetNumber(results, &IPolicyResults::put_PolicyId, 17);
    REQUIRE_HR(results->put_HasRules(VARIANT_FALSE), S_OK);
    REQUIRE_HR(results->put_Cancelled(VARIANT_TRUE), S_OK);
    SetText(results, &IPolicyResults::put_PolicyName, L"Save & share");
    Violate(results, 9, L"Don't <print> & tell");
    Violate(results, 0, L"Inform");
    Violate(results, 2, L"Ask \"why\"");
    return results;
}

void FillPrintJobScalars(const ComPtr<IPrintJob>& job) {
    SetText(job, &IPrintJob::put_JobGuid, L"{3F2504E0-4F89-41D3-9A0C-0305E82C3301}");
    SetText(job, &IPrintJob::put_CustomerCode, L"C&A 7");
    SetText(job, &IPrintJob::put_UserName, L"j\u00fcrgen");
    SetText(job, &IPrintJob::put_UserDomainName, L"OFFICE");
    REQUIRE_HR(job->put_FromSystemUser(VARIANT_TRUE), S_OK);
    SetText(job, &IPrintJob::put_DesktopUserName, L"\u674e\u96f7");
    SetText(job, &IPrintJob::put_DesktopUserDomainName, L"DESK");
    REQUIRE_HR(job->put_JobTimeLocal(MakeDate(2010, 3, 4, 5, 6, 7)), S_OK);
    SetNumber(job, &IPrintJob::put_JobTimeLocalMsec, 89);
    REQUIRE_HR(job->put_JobTimeUtc(MakeDate(2010, 3, 4, 4, 6, 7)), S_OK);
    SetNumber(job, &IPrintJob::put_JobSize, 184320);
    SetText(job, &IPrintJob::put_JobName, L"\"Draft\" <1> & 'final' \U0001f600.docx");
    SetText(job, &IPrintJob::put_JobFileName, L"C:\\spool\\00042.SPL");
    SetText(job, &IPrintJob::put_JobDataType, L"NT EMF 1.008");
    SetText(job, &IPrintJob::put_MachineName, L"PC-0117");
    SetText(job, &IPrintJob::put_ApplicationName, L"winword.exe");
    SetText(job, &IPrintJob::put_ApplicationDescription, L"Word & more");
    REQUIRE_HR(job->put_VpnConnected(VARIANT_TRUE), S_OK);
    SetNumber(job, &IPrintJob::put_TonerCoverage, 7);
    SetNumber(job, &IPrintJob::put_DataSource, -3);
    SetNumber(job, &IPrintJob::put_JobContentsSource, 2);
    SetNumber(job, &IPrintJob::put_JobContentsDiscardCount, 4);
    SetText(job, &IPrintJob::put_PageCounterErrorMessage, L"Page 3 <skipped>");
    SetText(job, &IPrintJob::put_PageCounterResult, L"partial");
}

/// Sets every field and child, even those that the job's version does not write.
void FillPrintJob(const ComPtr<IPrintJob>& job) {
    FillPrintJobScalars(job);
    const auto contents = CreateJobContents();
    FillJobContents(contents);
    REQUIRE_HR(job->put_JobContents(contents.Get()), S_OK);
    REQUIRE_HR(job->put_PageCounterJobContents(PageCounterContents().Get()), S_OK);
    REQUIRE_HR(job->put_WindowsPrintInfo(FilledWindowsPrintInfo().Get()), S_OK);
    REQUIRE_HR(job->put_PolicyResults(FilledPolicyResults().Get()), S_OK);
}

/// A log target for each version, so that every type is written at least once.
void SetLogTarget(const ComPtr<IPrintJob>& job, const std::string& version) {
    if (version == "4.2")
        SetNumber(job, &IPrintJob::put_DeviceId, 42);
    else if (version == "4.3")
        SetText(job, &IPrintJob::put_DeviceAddress, L"10.0.0.7 & 8");
    else if (version == "6.0")
        REQUIRE_HR(job->ResetLogTarget(), S_OK);
    else if (version == "7.4")
        SetNumber(job, &IPrintJob::put_DeviceId, -42);
    else
        SetText(job, &IPrintJob::put_LogicalPrinterGuid, L"{7D9A1B52}");
}

/// Checks that a new record, and one with other values, read the file and write it unchanged.
template<class Interface>
void CheckKeeps(ComPtr<Interface> (*create)(), const std::string& file) {
    INFO(file);
    const std::wstring text = Golden(file);
    const auto record = create();
    REQUIRE_HR(Put(record, &Interface::put_Xml, text), S_OK);
    CHECK_TEXT(Text(record, &Interface::get_Xml), text);
    REQUIRE_HR(Put(record, &Interface::put_Xml, text), S_OK);
    CHECK_TEXT(Text(record, &Interface::get_Xml), text);
}

} // namespace

TEST_CASE("Golden_print_job_of_each_version_is_written_to_the_character") {
    const std::string version = GENERATE("3.5", "4.0", "4.1", "4.2", "4.3", "5.1", "6.0", "7.4", "7.26");
    INFO(version);
    const auto job = PrintJobOfVersion(std::wstring(version.begin(), version.end()));
    FillPrintJob(job);
    SetLogTarget(job, version);
    CHECK_TEXT(Text(job, &IPrintJob::get_Xml), Golden("print_job_" + version + ".xml"));
}

TEST_CASE("Golden_print_job_of_each_version_is_kept") {
    const std::string version =
        GENERATE("3.5", "4.0", "4.1", "4.2", "4.3", "5.1", "6.0", "7.4", "7.26", "new");
    CheckKeeps(CreatePrintJob, "print_job_" + version + ".xml");
}

TEST_CASE("Golden_new_print_job_is_written_to_the_character") {
    const auto job = CreatePrintJob();
    REQUIRE_HR(job->put_JobTimeLocal(MakeDate(2010, 3, 4, 5, 6, 7)), S_OK);
    REQUIRE_HR(job->put_JobTimeUtc(MakeDate(2010, 3, 4, 4, 6, 7)), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_Xml), Golden("print_job_new.xml"));
}

TEST_CASE("Golden_job_contents_are_written_and_kept_to_the_character") {
    CHECK_TEXT(Text(CreateJobContents(), &IJobContents::get_Xml), Golden("job_contents_new.xml"));
    const auto contents = CreateJobContents();
    FillJobContents(contents);
    CHECK_TEXT(Text(contents, &IJobContents::get_Xml), Golden("job_contents.xml"));
    CheckKeeps(CreateJobContents, "job_contents_new.xml");
    CheckKeeps(CreateJobContents, "job_contents.xml");
}

TEST_CASE("Golden_copy_lines_are_written_and_kept_to_the_character") {
    CHECK_TEXT(Text(CreateCopyLines(), &ICopyLines::get_Xml), Golden("copy_lines_new.xml"));
    const auto contents = CreateJobContents();
    FillJobContents(contents);
    ComPtr<ICopyLines> lines;
    REQUIRE_HR(contents->get_JobCopyLines(lines.Put()), S_OK);
    CHECK_TEXT(Text(lines, &ICopyLines::get_Xml), Golden("copy_lines.xml"));
    CheckKeeps(CreateCopyLines, "copy_lines_new.xml");
    CheckKeeps(CreateCopyLines, "copy_lines.xml");
}

TEST_CASE("Golden_copy_line_is_written_and_kept_to_the_character") {
    const auto line = CreateCopyLine();
    CHECK_TEXT(Text(line, &ICopyLine::get_Xml), Golden("copy_line_new.xml"));
    SetText(line, &ICopyLine::put_PaperSize, L"Letter & more");
    SetText(line, &ICopyLine::put_PaperDimensions, L"216,279");
    SetText(line, &ICopyLine::put_Attributes, L"Duplex,Color");
    SetNumber(line, &ICopyLine::put_Sheets, 7);
    SetNumber(line, &ICopyLine::put_PagesBW, 8);
    SetNumber(line, &ICopyLine::put_PagesColor, 9);
    SetNumber(line, &ICopyLine::put_PagesBlank, 10);
    CHECK_TEXT(Text(line, &ICopyLine::get_Xml), Golden("copy_line.xml"));
    CheckKeeps(CreateCopyLine, "copy_line_new.xml");
    CheckKeeps(CreateCopyLine, "copy_line.xml");
}

TEST_CASE("Golden_copy_line_of_the_older_form_is_rewritten_in_the_current_one") {
    const auto line = CreateCopyLine();
    SetText(line, &ICopyLine::put_Xml, Golden("copy_line_older.xml"));
    CHECK_TEXT(Text(line, &ICopyLine::get_Xml), Golden("copy_line_older_rewritten.xml"));
}

TEST_CASE("Golden_windows_print_info_is_written_and_kept_to_the_character") {
    CHECK_TEXT(Text(CreateWindowsPrintInfo(), &IWindowsPrintInfo::get_Xml),
               Golden("windows_print_info_new.xml"));
    CHECK_TEXT(Text(FilledWindowsPrintInfo(), &IWindowsPrintInfo::get_Xml), Golden("windows_print_info.xml"));
    CheckKeeps(CreateWindowsPrintInfo, "windows_print_info_new.xml");
    CheckKeeps(CreateWindowsPrintInfo, "windows_print_info.xml");
}

TEST_CASE("Golden_policy_results_are_written_and_kept_to_the_character") {
    CHECK_TEXT(Text(CreatePolicyResults(), &IPolicyResults::get_Xml), Golden("policy_results_new.xml"));
    CHECK_TEXT(Text(FilledPolicyResults(), &IPolicyResults::get_Xml), Golden("policy_results.xml"));
    CheckKeeps(CreatePolicyResults, "policy_results_new.xml");
    CheckKeeps(CreatePolicyResults, "policy_results.xml");
}

namespace {

/// Sets the common fields of device jobs, even those that the version does not write.
template<class Job>
void FillDeviceJob(const ComPtr<Job>& job) {
    SetText(job, &Job::put_JobGuid, L"{3F2504E0-4F89-41D3-9A0C-0305E82C3301}");
    SetText(job, &Job::put_CustomerCode, L"C&A 7");
    SetNumber(job, &Job::put_IdentifierType, 3);
    SetText(job, &Job::put_IdentifierData, L"card <17>");
    SetNumber(job, &Job::put_DeviceId, 12);
    REQUIRE_HR(job->put_JobTimeLocal(MakeDate(2010, 3, 4, 5, 6, 7)), S_OK);
    const auto contents = CreateJobContents();
    FillJobContents(contents);
    REQUIRE_HR(job->put_JobContents(contents.Get()), S_OK);
    REQUIRE_HR(job->put_PolicyResults(FilledPolicyResults().Get()), S_OK);
}

/// Checks the file of a new device job with a fixed time, then sets a version and all fields.
template<class Job>
ComPtr<Job> FilledDeviceJob(ComPtr<Job> (*create)(), const wchar_t* root, const std::string& newFile,
                            const std::wstring& version) {
    auto job = create();
    REQUIRE_HR(job->put_JobTimeLocal(MakeDate(2010, 3, 4, 5, 6, 7)), S_OK);
    CHECK_TEXT(Text(job, &Job::get_Xml), Golden(newFile));
    SetText(job, &Job::put_Xml, RecordText(root, version, L"<JobContents><JobCopyLines/></JobContents>"));
    FillDeviceJob(job);
    return job;
}

} // namespace

TEST_CASE("Golden_copy_job_is_written_and_kept_to_the_character") {
    const std::string version = GENERATE("3.9", "4.0");
    const std::string file = "copy_job_" + version + ".xml";
    const auto job = FilledDeviceJob(CreateCopyJob, L"CopyJob", "copy_job_new.xml",
                                     std::wstring(version.begin(), version.end()));
    CHECK_TEXT(Text(job, &ICopyJob::get_Xml), Golden(file));
    CheckKeeps(CreateCopyJob, file);
    CheckKeeps(CreateCopyJob, "copy_job_new.xml");
}

TEST_CASE("Golden_scan_job_is_written_and_kept_to_the_character") {
    const std::string version = GENERATE("3.9", "4.0");
    const std::string file = "scan_job_" + version + ".xml";
    const auto job = FilledDeviceJob(CreateScanJob, L"ScanJob", "scan_job_new.xml",
                                     std::wstring(version.begin(), version.end()));
    SetNumber(job, &IScanJob::put_DestinationType, 2);
    SetText(job, &IScanJob::put_Destination, L"a&b@corvane.example");
    SetNumber(job, &IScanJob::put_Duration, 61);
    CHECK_TEXT(Text(job, &IScanJob::get_Xml), Golden(file));
    CheckKeeps(CreateScanJob, file);
    CheckKeeps(CreateScanJob, "scan_job_new.xml");
}

TEST_CASE("Golden_fax_job_is_written_and_kept_to_the_character") {
    const auto job = FilledDeviceJob(CreateFaxJob, L"FaxJob", "fax_job_new.xml", L"4.2");
    SetText(job, &IFaxJob::put_PhoneNumber, L"+49 30 <1234>");
    SetText(job, &IFaxJob::put_RemoteStationId, L"REMOTE 1");
    SetNumber(job, &IFaxJob::put_Duration, 61);
    CHECK_TEXT(Text(job, &IFaxJob::get_Xml), Golden("fax_job_4.2.xml"));
    CheckKeeps(CreateFaxJob, "fax_job_4.2.xml");
    CheckKeeps(CreateFaxJob, "fax_job_new.xml");
}

namespace {

void FillLogicalPrinter(const ComPtr<ILogicalPrinter>& printer) {
    using Printer = ILogicalPrinter;
    const struct {
        HRESULT (STDMETHODCALLTYPE Printer::*put)(BSTR);
        const wchar_t* value;
    } texts[] = {
        {&Printer::put_LogicalPrinterGuid, L"{7D9A1B52}"},
        {&Printer::put_CustomerCode, L"C&A 7"},
        {&Printer::put_MachineGuid, L"{0C1E4B57}"},
        {&Printer::put_PrinterName, L"M\u00fcller <2nd floor>"},
        {&Printer::put_PortName, L"IP_10.0.0.7"},
        {&Printer::put_ShareName, L"MUELLER"},
        {&Printer::put_ServerName, L"\\\\SRV1"},
        {&Printer::put_Location, L"Building 2"},
        {&Printer::put_Comments, L"colour & fast"},
        {&Printer::put_TrackerVersion, L"6.1.2"},
        {&Printer::put_DriverName, L"Driver A"},
        {&Printer::put_DriverFileName, L"a.dll"},
        {&Printer::put_DriverDataFileName, L"a.dat"},
        {&Printer::put_DriverFileDescription, L"Driver of A"},
        {&Printer::put_DriverCompanyName, L"A Ltd"},
        {&Printer::put_DriverFileVersion, L"1.2.3.4"},
        {&Printer::put_PrintMonitorName, L"Monitor B"},
        {&Printer::put_PrintMonitorFileName, L"b.dll"},
        {&Printer::put_PrintMonitorFileDescription, L"Monitor of B"},
        {&Printer::put_PrintMonitorCompanyName, L"B Ltd"},
        {&Printer::put_PrintMonitorFileVersion, L"2.3.4.5"},
        {&Printer::put_PrintProcessorName, L"Processor C"},
        {&Printer::put_PrinterInfo,
         L"<PrinterInfo Kind=\"2\"><Trays>3</Trays><Note>a &amp; b</Note></PrinterInfo>"},
        {&Printer::put_Destination, L"<Destination><Device Id=\"7\"/></Destination>"},
    };
    for (const auto& text : texts)
        SetText(printer, text.put, text.value);
    REQUIRE_HR(printer->put_FirstTransactionDate(MakeDate(2010, 3, 4, 5, 6, 7)), S_OK);
    REQUIRE_HR(printer->put_LastTransactionDate(MakeDate(2011, 12, 31, 23, 59, 59)), S_OK);
    REQUIRE_HR(printer->put_IsSecurePrint(VARIANT_TRUE), S_OK);
    REQUIRE_HR(printer->put_ColorCapable(VARIANT_TRUE), S_OK);
    SetNumber(printer, &Printer::put_Attributes, LONG_MIN);
    SetNumber(printer, &Printer::put_BuildNumber, 1234);
}

} // namespace

TEST_CASE("Golden_logical_printer_of_each_version_is_written_and_kept_to_the_character") {
    const std::string version = GENERATE("7.0", "6.0", "4.0", "3.6");
    const std::string file = "logical_printer_" + version + ".xml";
    const auto printer = CreateLogicalPrinter();
    SetText(printer, &ILogicalPrinter::put_Xml,
            RecordText(L"LogicalPrinter", std::wstring(version.begin(), version.end())));
    FillLogicalPrinter(printer);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Xml), Golden(file));
    CheckKeeps(CreateLogicalPrinter, file);
}

TEST_CASE("Golden_logical_printer_of_the_older_form_is_written_and_kept_to_the_character") {
    // Half of the fields have no property, so read them from XML; then set the others again.
    const auto printer = CreateLogicalPrinter();
    SetText(printer, &ILogicalPrinter::put_Xml, Golden("logical_printer_3.5.xml"));
    FillLogicalPrinter(printer);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Xml), Golden("logical_printer_3.5.xml"));
    CheckKeeps(CreateLogicalPrinter, "logical_printer_3.5.xml");
}

TEST_CASE("Golden_new_logical_printer_is_written_and_kept_to_the_character") {
    const auto printer = CreateLogicalPrinter();
    REQUIRE_HR(printer->put_FirstTransactionDate(MakeDate(2010, 3, 4, 5, 6, 7)), S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Xml), Golden("logical_printer_new.xml"));
    CheckKeeps(CreateLogicalPrinter, "logical_printer_new.xml");
}
