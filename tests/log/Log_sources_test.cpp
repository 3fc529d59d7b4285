#include "tests/support/ForeignChild.h"
#include "tests/support/ImportPatch.h"
#include "tests/support/LogSession.h"

#include <clocale>
#include <functional>

// The source names in the log. Other components match them, so the tests compare them exactly, odd ones
// included.

namespace {

constexpr auto OwnResult = static_cast<HRESULT>(0x8004FF05); // without a system message

/// The log output of the call.
std::wstring Logged(LogSession& session, HRESULT expected, const std::function<HRESULT()>& call) {
    session.TakeText();
    CHECK_HR(call(), expected);
    return session.TakeText();
}

std::wstring Exception(const std::wstring& source, const std::wstring& message) {
    return L"[" + source + L"] Exception: " + message + L"\r\n";
}

/// The system's message for a result, as the log shows it.
std::wstring SystemText(HRESULT result) {
    wchar_t text[256];
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(result), MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT), text,
                                  256, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r'))
        --length;
    REQUIRE(length > 0);
    return std::wstring(text, length);
}

std::wstring OutOfMemoryText() {
    return SystemText(E_OUTOFMEMORY);
}

// Replacements for imported functions: one call fails, the others call the original.

int callsUntilFailure = 0; ///< number of calls that still succeed
bool failureIsDue = false;
void* originalFunction = nullptr;

bool FailsNow() {
    if (!failureIsDue || callsUntilFailure-- > 0)
        return false;
    failureIsDue = false;
    return true;
}

BSTR WINAPI FailingSysAllocStringLen(const OLECHAR* text, UINT length) {
    return FailsNow() ? nullptr
                      : reinterpret_cast<decltype(&SysAllocStringLen)>(originalFunction)(text, length);
}

void* __cdecl FailingMalloc(std::size_t size) {
    return FailsNow() ? nullptr : reinterpret_cast<void*(__cdecl*)(std::size_t)>(originalFunction)(size);
}

HRESULT WINAPI FailingCreateErrorInfo(ICreateErrorInfo** info) {
    return FailsNow() ? E_OUTOFMEMORY : reinterpret_cast<decltype(&CreateErrorInfo)>(originalFunction)(info);
}

/// Makes one of the library's calls of a function fail, after `successes` others. `happened` is false if
/// there were fewer calls.
HRESULT WithFailing(const char* function, void* replacement, int successes, bool& happened,
                    const std::function<HRESULT()>& call) {
    const ImportPatch patch(GetModuleHandleW(L"Tarnwick.dll"), function, replacement);
    originalFunction = patch.Original();
    callsUntilFailure = successes;
    failureIsDue = true;
    const HRESULT result = call();
    happened = !failureIsDue;
    failureIsDue = false;
    return result;
}

/// The same for the first call, which must happen.
HRESULT WithFailing(const char* function, void* replacement, const std::function<HRESULT()>& call) {
    bool happened = false;
    const HRESULT result = WithFailing(function, replacement, 0, happened, call);
    CHECK(happened);
    return result;
}

HRESULT WithoutTextMemory(const std::function<HRESULT()>& call) {
    return WithFailing("SysAllocStringLen", reinterpret_cast<void*>(FailingSysAllocStringLen), call);
}

HRESULT WithoutMemory(const std::function<HRESULT()>& call) {
    return WithFailing("malloc", reinterpret_cast<void*>(FailingMalloc), call);
}

/// Checks that a text getter that runs out of memory logs the source and returns no text.
template<class Interface>
void CheckTextGetter(const ComPtr<Interface>& object, HRESULT (STDMETHODCALLTYPE Interface::*getter)(BSTR*),
                     const wchar_t* source) {
    INFO(Narrow(source));
    BSTR value = reinterpret_cast<BSTR>(0x1234);
    CHECK_HR(WithoutTextMemory([&] { return (object.Get()->*getter)(&value); }), E_OUTOFMEMORY);
    CHECK(value == nullptr);
    CHECK_TEXT(TakeErrorDescription(), OutOfMemoryText());
}

} // namespace

TEST_CASE("Log_names_the_reader_of_each_record") {
    LogSession session;
    session.Enable();
    CHECK_TEXT(Logged(session, E_FAIL, [] { return Put(CreateCopyJob(), &ICopyJob::put_Xml, L"<x/>"); }),
               Exception(L"CCopyJobImpl::put_Xml", L"CopyJob element is missing."));
    CHECK_TEXT(Logged(session, E_FAIL, [] { return Put(CreateScanJob(), &IScanJob::put_Xml, L"<x/>"); }),
               Exception(L"CScanJobImpl::put_Xml", L"ScanJob element is missing."));
    CHECK_TEXT(Logged(session, E_FAIL, [] { return Put(CreateFaxJob(), &IFaxJob::put_Xml, L"<x/>"); }),
               Exception(L"CFaxJobImpl::put_Xml", L"FaxJob element is missing."));
    CHECK_TEXT(Logged(session, E_FAIL, [] { return Put(CreatePrintJob(), &IPrintJob::put_Xml, L"<x/>"); }),
               Exception(L"CPrintJobImpl::put_Xml", L"PrintJob element is missing."));
    CHECK_TEXT(Logged(session, E_FAIL,
                      [] { return Put(CreateLogicalPrinter(), &ILogicalPrinter::put_Xml, L"<x/>"); }),
               Exception(L"CLogicalPrinterImpl::put_Xml", L"LogicalPrinter element is missing."));
}

TEST_CASE("Log_names_the_layers_of_an_invalid_fragment") {
    LogSession session;
    session.Enable();
    CHECK_TEXT(Logged(session, E_FAIL, [] { return Put(CreateCopyLine(), &ICopyLine::put_Xml, L"<x/>"); }),
               L"[CCopyLine::put_Xml] Invalid Xml fragment\r\n"
               L"[CCopyLineImpl::put_Xml] Invalid Xml fragment\r\n"
               L"[CCopyLineImpl::get_Xml] Exception: [CCopyLineImpl::put_Xml] Invalid Xml fragment\r\n");
    CHECK_TEXT(Logged(session, E_FAIL, [] { return Put(CreateCopyLines(), &ICopyLines::put_Xml, L"<x/>"); }),
               L"[CCopyLines::put_Xml] Invalid Xml fragment\r\n"
               L"[CCopyLinesImpl::put_Xml] Invalid Xml fragment\r\n"
               L"[CCopyLinesImpl::put_Xml] Exception: [CCopyLinesImpl::put_Xml] Invalid Xml fragment\r\n");
    CHECK_TEXT(
        Logged(session, E_FAIL, [] { return Put(CreateJobContents(), &IJobContents::put_Xml, L"<x/>"); }),
        L"[CJobContents::put_Xml] Invalid Xml fragment\r\n"
        L"[CJobContentsImpl::put_Xml] Invalid Xml fragment\r\n"
        L"[CJobContentsImpl::put_Xml] Exception: [CJobContentsImpl::put_Xml] Invalid Xml fragment\r\n");
    CHECK_TEXT(
        Logged(session, E_FAIL,
               [] { return Put(CreateJobContents(), &IJobContents::put_Xml, L"<JobContents/>"); }),
        L"[CCopyLines::put_Xml] Invalid Xml fragment\r\n"
        L"[CJobContents::put_Xml] Invalid Xml fragment\r\n"
        L"[CJobContentsImpl::put_Xml] Invalid Xml fragment\r\n"
        L"[CJobContentsImpl::put_Xml] Exception: [CJobContentsImpl::put_Xml] Invalid Xml fragment\r\n");
}

TEST_CASE("Log_invalid_print_info_is_reported_in_the_log_only") {
    LogSession session;
    session.Enable();
    CHECK_TEXT(Logged(session, E_FAIL,
                      [] { return Put(CreateWindowsPrintInfo(), &IWindowsPrintInfo::put_Xml, L"<x/>"); }),
               L"[CWindowsPrintInfo::put_Xml] Invalid Xml fragment\r\n"
               L"[CWindowsPrintInfoImpl::put_Xml] Invalid Xml fragment\r\n");
    CHECK_TEXT(TakeErrorDescription(), L"<none>");
}

TEST_CASE("Log_names_the_writer_of_each_job_whose_child_fails") {
    LogSession session;
    session.Enable();
    ForeignChild child(__uuidof(IJobContents));
    child.getResult = OwnResult;
    const auto logged = [&](auto&& job, auto putChild, auto getter) {
        REQUIRE_HR((job.Get()->*putChild)(child.As<IJobContents>()), S_OK);
        BSTR value = reinterpret_cast<BSTR>(0x1234);
        std::wstring text = Logged(session, OwnResult, [&] { return (job.Get()->*getter)(&value); });
        CHECK(value == nullptr);
        return text;
    };
    const std::wstring message = L"IDispatch error #64773";
    CHECK_TEXT(logged(CreateCopyJob(), &ICopyJob::put_JobContents, &ICopyJob::get_Xml),
               Exception(L"CCopyJobImpl::get_Xml", message));
    CHECK_TEXT(logged(CreateScanJob(), &IScanJob::put_JobContents, &IScanJob::get_Xml),
               Exception(L"CScanJobImpl::get_Xml", message));
    CHECK_TEXT(logged(CreateFaxJob(), &IFaxJob::put_JobContents, &IFaxJob::get_Xml),
               Exception(L"CFaxJobImpl::get_Xml", message));
    CHECK_TEXT(logged(CreatePrintJob(), &IPrintJob::put_JobContents, &IPrintJob::get_Xml),
               Exception(L"CPrintJobImpl::get_Xml", message));
    CHECK_TEXT(
        logged(CreatePrintJob(), &IPrintJob::put_PageCounterJobContents, &IPrintJob::get_PageCounterInfoXml),
        Exception(L"CPrintJobImpl::get_PageCounterInfoXml", message));
    // Once, with the name of the call.
    CHECK_TEXT(logged(CreatePrintJob(), &IPrintJob::put_PageCounterJobContents, &IPrintJob::get_Xml),
               Exception(L"CPrintJobImpl::get_Xml", message));
    CHECK(child.references == 0);
}

TEST_CASE("Log_failure_that_explains_itself_is_a_com_exception") {
    LogSession session;
    session.Enable(8);
    ForeignChild child(__uuidof(IJobContents));
    child.getResult = OwnResult;
    child.ExplainFailures(L"the child's own text");
    const auto job = CreateCopyJob();
    REQUIRE_HR(job->put_JobContents(child.As<IJobContents>()), S_OK);
    BSTR value = nullptr;
    CHECK_TEXT(Logged(session, OwnResult, [&] { return job->get_Xml(&value); }),
               L"[CQxCom] [CCopyJobImpl::get_Xml] COM exception: IDispatch error #64773\r\n");
    ComPtr<IErrorInfo> info;
    REQUIRE_HR(GetErrorInfo(0, info.Put()), S_OK);
    CHECK(info.Get() == child.explanation.Get());
}

TEST_CASE("Log_names_both_layers_when_a_job_reads_an_invalid_child") {
    LogSession session;
    session.Enable();
    CHECK_TEXT(Logged(session, E_FAIL,
                      [] {
                          return Put(CreateCopyJob(), &ICopyJob::put_Xml,
                                     L"<CopyJob Version=\"4.0\"><JobContents/></CopyJob>");
                      }),
               L"[CCopyLines::put_Xml] Invalid Xml fragment\r\n"
               L"[CJobContents::put_Xml] Invalid Xml fragment\r\n"
               L"[CJobContentsImpl::put_Xml] Invalid Xml fragment\r\n"
               L"[CJobContentsImpl::put_Xml] Exception: [CJobContentsImpl::put_Xml] Invalid Xml fragment\r\n"
               L"[CCopyJobImpl::put_Xml] COM exception: " +
                   SystemText(E_FAIL) + L"\r\n");
    CHECK_TEXT(TakeErrorDescription(), L"[CJobContentsImpl::put_Xml] Invalid Xml fragment");
}

TEST_CASE("Log_names_the_property_of_another_log_target") {
    LogSession session;
    session.Enable();
    LONG id = 0;
    const auto job = CreatePrintJob();
    CHECK_TEXT(Logged(session, static_cast<HRESULT>(0x800710DD), [&] { return job->get_DeviceId(&id); }),
               Exception(L"CPrintJobImpl::CheckLogTargetTypeSupportsProperty",
                         L"The DeviceId property is not supported when the LogTargetType is None."));
    CHECK_TEXT(TakeErrorDescription(),
               L"The DeviceId property is not supported when the LogTargetType is None.");
}

TEST_CASE("Log_names_the_destination_that_is_not_well_formed") {
    LogSession session;
    session.Enable();
    const auto printer = CreateLogicalPrinter();
    CHECK_TEXT(
        Logged(session, E_FAIL, [&] { return Put(printer, &ILogicalPrinter::put_Destination, L"a<"); }),
        Exception(L"CLogicalPrinterImpl::put_Destination", L"Destination element is not well formed."));
}

TEST_CASE("Log_names_each_text_getter_that_runs_out_of_memory") {
    LogSession session;
    session.Enable();
    const std::wstring text = OutOfMemoryText();
    const auto check = [&](const auto& object, auto getter, const wchar_t* source) {
        session.TakeText();
        CheckTextGetter(object, getter, source);
        CHECK_TEXT(session.TakeText(), Exception(source, text));
    };
    // Two getters of a copy line report each other's names.
    check(CreateCopyLine(), &ICopyLine::get_Xml, L"CCopyLineImpl::put_Xml");
    check(CreateCopyLines(), &ICopyLines::get_Xml, L"CCopyLinesImpl::get_Xml");
    check(CreateJobContents(), &IJobContents::get_Xml, L"CJobContentsImpl::get_Xml");
    check(CreatePolicyResults(), &IPolicyResults::get_Xml, L"CPolicyResultsImpl::get_Xml");
    check(CreateWindowsPrintInfo(), &IWindowsPrintInfo::get_Xml, L"CWindowsPrintInfoImpl::get_Xml");
    check(CreateLogicalPrinter(), &ILogicalPrinter::get_Xml, L"CLogicalPrinterImpl::get_Xml");
    check(CreateLogicalPrinter(), &ILogicalPrinter::get_DriverInfoXml,
          L"CLogicalPrinterImpl::get_DriverInfoXml");
    check(CreatePrintJob(), &IPrintJob::get_PageCounterInfoXml, L"CPrintJobImpl::get_PageCounterInfoXml");

    const auto older = CreateLogicalPrinter();
    REQUIRE_HR(Put(older, &ILogicalPrinter::put_Xml, L"<LogicalPrinter Version=\"3.5\"/>"), S_OK);
    check(older, &ILogicalPrinter::get_Xml, L"CLogicalPrinterImpl::get_Xml35");
}

TEST_CASE("Log_names_the_methods_of_job_contents_that_run_out_of_memory") {
    LogSession session;
    session.Enable();
    const auto contents = CreateJobContents();
    const UniqueBstr words(L"A4,Duplex,B&W,PostScript,Staple,and a word too long for any short text buffer");
    BSTR texts[6] = {};
    VARIANT_BOOL flag = 0x55;
    // Load the catalogue first, so that the failure is in the method itself.
    BSTR left = nullptr;
    REQUIRE_HR(contents->DoAttributesMatch(words.Get(), &left, &flag), S_OK);
    SysFreeString(left);

    const std::wstring text = OutOfMemoryText();
    const auto check = [&](const wchar_t* source, const std::function<HRESULT()>& call) {
        INFO(Narrow(source));
        CHECK_TEXT(Logged(session, E_OUTOFMEMORY, [&] { return WithoutMemory(call); }),
                   Exception(source, text));
        CHECK_TEXT(TakeErrorDescription(), text);
    };
    // Most of them share one name.
    const wchar_t* general = L"CJobContentsImpl::GenerateGeneralContentsFromPageCounterInfo";
    check(general, [&] { return contents->GenerateContentsFromPageCounterInfo(words.Get(), 1, 1, 1, 1); });
    check(general, [&] {
        return contents->GenerateGeneralContentsFromPageCounterInfo(words.Get(), 1, 1, VARIANT_FALSE,
                                                                    &texts[0]);
    });
    CHECK(texts[0] == nullptr);
    const UniqueBstr lines(L"1,1,1,1,5;2,1,1,1,5");
    check(general, [&] { return contents->GenerateContentsFromDBInfo(lines.Get(), 1, 1, 6, 3); });
    auto* const garbage = reinterpret_cast<BSTR>(0x1234);
    for (BSTR& each : texts)
        each = garbage;
    check(general, [&] {
        return contents->MatchAttributes(words.Get(), &texts[0], &texts[1], &texts[2], &texts[3], &texts[4],
                                         &flag, &texts[5]);
    });
    for (BSTR each : texts)
        CHECK(each == nullptr);
    CHECK(flag == VARIANT_FALSE);

    check(L"CJobContentsImpl::GenerateCopyLineFromPageCounterInfo",
          [&] { return contents->GenerateCopyLineFromPageCounterInfo(words.Get(), 1, 1, 1, 1); });
    left = garbage;
    check(L"CJobContentsImpl::DoAttributesMatch",
          [&] { return contents->DoAttributesMatch(words.Get(), &left, &flag); });
    CHECK(left == nullptr);
    CHECK(flag == VARIANT_FALSE);
}

TEST_CASE("Log_each_text_that_runs_out_of_memory_leaves_no_out_value") {
    LogSession session;
    session.Enable();
    const auto contents = CreateJobContents();
    const UniqueBstr words(L"A4");
    int failures = 0;
    for (bool happened = true; happened; ++failures) {
        BSTR texts[6] = {};
        VARIANT_BOOL flag = 0x55;
        const HRESULT result = WithFailing(
            "SysAllocStringLen", reinterpret_cast<void*>(FailingSysAllocStringLen), failures, happened, [&] {
                return contents->MatchAttributes(words.Get(), &texts[0], &texts[1], &texts[2], &texts[3],
                                                 &texts[4], &flag, &texts[5]);
            });
        INFO(failures);
        CHECK_HR(result, happened ? E_OUTOFMEMORY : S_OK);
        CHECK(flag == VARIANT_FALSE);
        for (BSTR each : texts) {
            CHECK((each == nullptr) == happened);
            SysFreeString(each);
        }
    }
    CHECK(failures == 7); // one for each text, and the successful call
}

TEST_CASE("Log_names_the_readers_that_run_out_of_memory") {
    LogSession session;
    session.Enable();
    const std::wstring text = OutOfMemoryText();
    const auto printer = CreateLogicalPrinter();
    const UniqueBstr xml(
        L"<LogicalPrinter Version=\"3.6\"><PrinterName>a name</PrinterName></LogicalPrinter>");
    CHECK_TEXT(Logged(session, E_OUTOFMEMORY,
                      [&] { return WithoutMemory([&] { return printer->put_Xml(xml.Get()); }); }),
               Exception(L"CLogicalPrinterImpl::put_Xml", text));

    const auto policy = CreatePolicyResults();
    const UniqueBstr policyXml(L"<PolicyResults><RuleViolations>a text too long for any short text "
                               L"buffer</RuleViolations></PolicyResults>");
    CHECK_TEXT(Logged(session, E_OUTOFMEMORY,
                      [&] { return WithoutMemory([&] { return policy->put_Xml(policyXml.Get()); }); }),
               Exception(L"CPolicyResultsImpl::put_Xml", text));

    const auto line = CreateCopyLine();
    const UniqueBstr lineXml(L"<CopyLine><PaperSize>A4</PaperSize></CopyLine>");
    CHECK_TEXT(Logged(session, E_OUTOFMEMORY,
                      [&] { return WithoutMemory([&] { return line->put_Xml(lineXml.Get()); }); }),
               Exception(L"CCopyLineImpl::get_Xml", text));

    const auto info = CreateWindowsPrintInfo();
    const UniqueBstr infoXml(L"<WindowsPrintInfo><DevModeFormName>A4</DevModeFormName></WindowsPrintInfo>");
    CHECK_TEXT(Logged(session, E_OUTOFMEMORY,
                      [&] { return WithoutMemory([&] { return info->put_Xml(infoXml.Get()); }); }),
               Exception(L"CWindowsPrintInfoImpl::put_Xml", text));
}

TEST_CASE("Log_names_the_reader_of_the_older_printer_form") {
    LogSession session;
    session.Enable();
    const auto printer = CreateLogicalPrinter();
    // Too long for a small-string buffer.
    const std::wstring name(500, L'n');
    const UniqueBstr xml(L"<LogicalPrinter Version=\"3.5\"><PrinterName>" + name +
                         L"</PrinterName></LogicalPrinter>");
    const std::wstring text = OutOfMemoryText();
    const std::wstring opening = Exception(L"CLogicalPrinterImpl::put_Xml", text);
    const std::wstring reading = Exception(L"CLogicalPrinterImpl::put_Xml35", text);
    int openingFailures = 0, readingFailures = 0;
    for (int successes = 0; successes < 1000; ++successes) {
        bool happened = false;
        const HRESULT result = WithFailing("malloc", reinterpret_cast<void*>(FailingMalloc), successes,
                                           happened, [&] { return printer->put_Xml(xml.Get()); });
        SetErrorInfo(0, nullptr);
        const std::wstring logged = session.TakeText();
        INFO(successes << " " << Narrow(logged));
        if (!happened) {
            CHECK_HR(result, S_OK);
            CHECK_TEXT(logged, L"");
            break;
        }
        CHECK_HR(result, E_OUTOFMEMORY);
        openingFailures += logged == opening;
        readingFailures += logged == reading;
        CHECK((logged == opening || logged == reading));
    }
    // Opening and reading the document report different names.
    CHECK(openingFailures > 0);
    CHECK(readingFailures > 0);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_PrinterName), name);
}

TEST_CASE("Log_line_is_written_even_without_error_information") {
    LogSession session;
    session.Enable();
    const auto job = CreateCopyJob();
    CHECK_HR(Put(job, &ICopyJob::put_Xml, L"<x/>"), E_FAIL); // sets error information that must not stay
    CHECK_TEXT(Logged(session, E_FAIL,
                      [&] {
                          return WithFailing("CreateErrorInfo",
                                             reinterpret_cast<void*>(FailingCreateErrorInfo),
                                             [&] { return Put(job, &ICopyJob::put_Xml, L"<x/>"); });
                      }),
               FailedOnce);
    CHECK_TEXT(TakeErrorDescription(), L"<none>");
}

TEST_CASE("Log_and_texts_do_not_depend_on_the_locale_that_a_host_sets") {
    LogSession session;
    session.Enable();
    const auto line = CreateCopyLine();
    const auto job = CreatePrintJob();
    REQUIRE_HR(Put(line, &ICopyLine::put_PaperSize, L"Napk\u00EFn \u0130 \u20AC"), S_OK);
    REQUIRE_HR(Put(job, &IPrintJob::put_JobName, L"I\u0130i\u0131 \u20AC"), S_OK);
    REQUIRE_HR(job->put_JobSize(1234567), S_OK);
    REQUIRE_HR(job->put_JobTimeLocal(40000.25), S_OK);
    ForeignChild child(__uuidof(IPolicyResults));
    child.putResult = OwnResult;
    const auto texts = [&] {
        std::wstring all = Text(job, &IPrintJob::get_Xml);
        CHECK(Value(line, &ICopyLine::get_DBPaperSize) == 0);
        const auto reader = CreatePrintJob();
        REQUIRE_HR(reader->put_PolicyResults(child.As<IPolicyResults>()), S_OK);
        CHECK_HR(Put(reader, &IPrintJob::put_Xml,
                     L"<PrintJob "
                     L"Version=\"7.26\"><FromSystemUser>TRUE</FromSystemUser><PolicyResults/></PrintJob>"),
                 OwnResult);
        CHECK(Value(reader, &IPrintJob::get_FromSystemUser) == VARIANT_TRUE);
        return all + TakeErrorDescription() + session.TakeText();
    };
    const std::wstring plain = texts();
    CHECK(plain.find(L"Could not resolve PaperSize entry for 'Napk\u00EFn \u0130 \u20AC'.\r\n") !=
          std::wstring::npos);
    struct HostLocale {
        explicit HostLocale(const char* name) { REQUIRE(std::setlocale(LC_ALL, name) != nullptr); }
        ~HostLocale() { std::setlocale(LC_ALL, "C"); }
    };
    for (const char* name : {"German_Germany.1252", "Turkish_Turkey.1254", "Japanese_Japan.932"}) {
        INFO(name);
        const HostLocale locale(name);
        CHECK_TEXT(texts(), plain);
    }
}
