#include "tests/support/DebuggerOutput.h"
#include "tests/support/LogSession.h"

#include <cstdio>
#include <ctime>
#include <memory>

// The effect of the log's registry values on the library's output.

namespace {

/// Two lines: "[QxVersion::QxVersion] ..." of the utilities and "[CPrintJobImpl::put_Xml] Exception: ..." of
/// the COM layer.
void FailWithUtilityLine() {
    REQUIRE_HR(Put(CreatePrintJob(), &IPrintJob::put_Xml, L"<PrintJob Version=\"7\"/>"), E_FAIL);
    SetErrorInfo(0, nullptr);
}

/// Three lines: two of the general category, one of the COM layer.
void FailWithGeneralLines() {
    REQUIRE_HR(Put(CreateCopyLine(), &ICopyLine::put_Xml, L"<x/>"), E_FAIL);
    SetErrorInfo(0, nullptr);
}

constexpr wchar_t VersionMessage[] =
    L"Version has fewer than two components or more than four components.\r\n";
const std::wstring UtilityLine = std::wstring(L"[QxVersion::QxVersion] ") + VersionMessage;
const std::wstring ComLine = std::wstring(L"[CPrintJobImpl::put_Xml] Exception: ") + VersionMessage;

std::wstring Format(const wchar_t* format, DWORD number) {
    wchar_t text[32];
    std::swprintf(text, 32, format, static_cast<unsigned>(number));
    return text;
}

std::wstring ProcessPart() {
    return Format(L"P%03X", GetCurrentProcessId());
}
std::wstring ThreadPart() {
    return Format(L"T%03X", GetCurrentThreadId());
}

/// The line of FailOnce with this header.
std::wstring WithHeader(const std::wstring& header) {
    return L"[" + header + L"] " + FailedOnce;
}

/// The output of one failing call.
std::wstring LoggedWith(std::uint32_t options) {
    LogSession session;
    session.Enable(options);
    FailOnce();
    return session.TakeText();
}

/// "dddd/dd/dd dd:dd:dd" with d for each digit.
std::wstring Shape(std::wstring_view text) {
    std::wstring shape(text);
    for (wchar_t& c : shape)
        if (c >= L'0' && c <= L'9')
            c = L'd';
    return shape;
}

} // namespace

TEST_CASE("Log_configuration_left_by_an_interrupted_test_is_restored_by_the_next_one") {
    const bool before = LogSession::KeyIsThere();
    auto cutOff = std::make_unique<LogSession>();
    cutOff->Enable();
    {
        LogSession next;
        FailOnce();
        CHECK_FALSE(FileExists(cutOff->Path())); // the next test starts without values
    }
    CHECK(LogSession::KeyIsThere() == before);
}

TEST_CASE("Log_without_its_key_or_values_writes_nothing") {
    LogSession session;
    FailOnce();
    CHECK_FALSE(FileExists(session.Path()));
    LogSession::Unload();
    session.Put(L"FileName", session.Path());
    FailOnce();
    CHECK_FALSE(FileExists(session.Path()));
}

TEST_CASE("Log_line_is_utf16_with_crlf_and_without_a_byte_order_mark") {
    LogSession session;
    session.Enable();
    const auto printer = CreateLogicalPrinter();
    CHECK_HR(Put(printer, &ILogicalPrinter::put_Destination, L"abc"), E_FAIL);
    std::FILE* file = _wfopen(session.Path().c_str(), L"rb");
    REQUIRE(file != nullptr);
    std::string bytes(1000, '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    std::fclose(file);
    const char line[] =
        "[CLogicalPrinterImpl::put_Destination] Exception: Destination element is not well formed.\r\n";
    std::string expected;
    for (const char* c = line; *c; ++c)
        expected.append(1, *c).append(1, '\0');
    CHECK(bytes == expected);
}

TEST_CASE("Log_enabled_is_read_as_a_flag") {
    LogSession session;
    session.Enable();
    session.Put(L"Enabled", 0u);
    FailOnce();
    CHECK_FALSE(FileExists(session.Path()));
    LogSession::Unload();
    session.Put(L"Enabled", 0x80000000u);
    FailOnce();
    CHECK_TEXT(session.TakeText(), FailedOnce);
}

TEST_CASE("Log_is_configured_when_the_library_is_loaded_and_not_later") {
    LogSession session;
    session.Enable();
    const auto job = CreateCopyJob(); // keeps the library loaded
    FailOnce();
    CHECK_TEXT(session.TakeText(), FailedOnce);
    session.Put(L"Enabled", 0u);
    FailOnce();
    CHECK_TEXT(session.TakeText(), FailedOnce);
}

TEST_CASE("Log_lines_are_appended_to_what_the_file_holds") {
    LogSession session;
    session.Enable();
    FailOnce();
    LogSession::Unload();
    FailOnce();
    CHECK_TEXT(session.TakeText(), std::wstring(FailedOnce) + FailedOnce);
}

TEST_CASE("Log_header_shows_each_part_alone") {
    CHECK_TEXT(LoggedWith(0), FailedOnce);
    CHECK_TEXT(LoggedWith(2), WithHeader(ProcessPart()));
    CHECK_TEXT(LoggedWith(4), WithHeader(ThreadPart()));
    CHECK_TEXT(LoggedWith(8), WithHeader(L"CQxCom"));
    CHECK_TEXT(LoggedWith(16), WithHeader(L"e"));
    CHECK_TEXT(LoggedWith(32), WithHeader(L"JobObjects"));
}

TEST_CASE("Log_header_without_any_known_part_is_a_pair_of_brackets") {
    CHECK_TEXT(LoggedWith(64), WithHeader(L""));
    CHECK_TEXT(LoggedWith(0xFFFFFFC0), WithHeader(L""));
}

TEST_CASE("Log_header_time_is_the_local_time") {
    wchar_t before[32], after[32];
    std::time_t now = std::time(nullptr);
    std::wcsftime(before, 32, L"%Y/%m/%d %H:%M:%S", std::localtime(&now));
    const std::wstring text = LoggedWith(1);
    now = std::time(nullptr);
    std::wcsftime(after, 32, L"%Y/%m/%d %H:%M:%S", std::localtime(&now));
    INFO(Narrow(text));
    REQUIRE(text.size() > 22);
    CHECK_TEXT(Shape(text.substr(0, 22)), L"[dddd/dd/dd dd:dd:dd] ");
    CHECK(text.substr(1, 19) >= before);
    CHECK(text.substr(1, 19) <= after);
    CHECK_TEXT(text.substr(22), FailedOnce);
}

TEST_CASE("Log_header_parts_keep_their_order_in_every_combination") {
    // The time has a separate test.
    const std::wstring parts[] = {ProcessPart(), ThreadPart(), L"CQxCom", L"e", L"JobObjects"};
    const std::uint32_t bits[] = {2, 4, 8, 16, 32};
    for (unsigned chosen = 1; chosen < 32; ++chosen) {
        std::uint32_t options = 0;
        std::wstring header;
        for (unsigned i = 0; i < 5; ++i) {
            if (!(chosen >> i & 1))
                continue;
            options |= bits[i];
            header += (header.empty() ? L"" : L" ") + parts[i];
        }
        INFO(options);
        CHECK_TEXT(LoggedWith(options), WithHeader(header));
    }
    const std::wstring all = LoggedWith(63);
    REQUIRE(all.size() > 21);
    CHECK_TEXT(Shape(all.substr(0, 21)), L"[dddd/dd/dd dd:dd:dd ");
    CHECK_TEXT(L"[" + all.substr(21),
               WithHeader(ProcessPart() + L" " + ThreadPart() + L" CQxCom e JobObjects"));
}

TEST_CASE("Log_header_shows_the_category_of_each_layer") {
    LogSession session;
    session.Enable(8);
    FailWithUtilityLine();
    CHECK_TEXT(session.TakeText(), L"[CQx] " + UtilityLine + L"[CQxCom] " + ComLine);
    FailWithGeneralLines();
    CHECK_TEXT(session.TakeText(), L"[] [CCopyLine::put_Xml] Invalid Xml fragment\r\n"
                                   L"[] [CCopyLineImpl::put_Xml] Invalid Xml fragment\r\n"
                                   L"[CQxCom] [CCopyLineImpl::get_Xml] Exception: "
                                   L"[CCopyLineImpl::put_Xml] Invalid Xml fragment\r\n");
}

TEST_CASE("Log_source_is_named_by_the_library") {
    LogSession session;
    session.Enable(32);
    session.Put(L"SourceName", L"Another");
    FailOnce();
    CHECK_TEXT(session.TakeText(), WithHeader(L"JobObjects"));
}

TEST_CASE("Log_filter_by_category_passes_common_bits") {
    const auto logged = [](std::uint32_t filters, std::uint32_t categories) {
        LogSession session;
        session.Enable();
        session.Put(L"Filters", filters);
        session.Put(L"Categories", categories);
        FailWithUtilityLine();
        FailWithGeneralLines();
        return session.TakeText();
    };
    const std::wstring general = L"[CCopyLine::put_Xml] Invalid Xml fragment\r\n"
                                 L"[CCopyLineImpl::put_Xml] Invalid Xml fragment\r\n";
    const std::wstring com = L"[CCopyLineImpl::get_Xml] Exception: "
                             L"[CCopyLineImpl::put_Xml] Invalid Xml fragment\r\n";
    const std::wstring all = UtilityLine + ComLine + general + com;
    CHECK_TEXT(logged(0, 0), all);
    CHECK_TEXT(logged(1, 0), L"");
    CHECK_TEXT(logged(1, 0x10000), UtilityLine);
    CHECK_TEXT(logged(1, 0x20000), ComLine + com);
    CHECK_TEXT(logged(1, 1), general);
    CHECK_TEXT(logged(1, 0x30001), all);
    CHECK_TEXT(logged(1, 0xFFFCFFFE), L"");
    CHECK_TEXT(logged(4, 0), all); // no such filter
}

TEST_CASE("Log_filter_by_type_passes_errors_only_with_their_bit") {
    const auto logged = [](std::uint32_t filters, std::uint32_t types) {
        LogSession session;
        session.Enable();
        session.Put(L"Filters", filters);
        session.Put(L"Types", types);
        session.Put(L"Categories", 0x20000u);
        FailOnce();
        return session.TakeText();
    };
    CHECK_TEXT(logged(2, 0), L"");
    CHECK_TEXT(logged(2, 0xFFFFFFFE), L"");
    CHECK_TEXT(logged(2, 1), FailedOnce);
    CHECK_TEXT(logged(2, 0xF), FailedOnce);
    CHECK_TEXT(logged(0, 0), FailedOnce);
    CHECK_TEXT(logged(3, 1), FailedOnce);
    CHECK_TEXT(logged(3, 2), L"");
}

TEST_CASE("Log_level_has_no_effect") {
    for (const std::uint32_t level : {0u, 1u, 0xFFFFFFFFu}) {
        LogSession session;
        session.Enable();
        session.Put(L"Level", level);
        FailOnce();
        CHECK_TEXT(session.TakeText(), FailedOnce);
    }
}

TEST_CASE("Log_only_errors_to_file_keeps_errors") {
    for (const std::uint32_t only : {0u, 1u}) {
        LogSession session;
        session.Enable();
        session.Put(L"OnlyErrorsToFile", only);
        FailOnce();
        CHECK_TEXT(session.TakeText(), FailedOnce);
    }
}

TEST_CASE("Log_values_of_the_wrong_type_are_ignored") {
    LogSession session;
    session.Enable();
    session.Put(L"Options", L"63");
    session.Put(L"Filters", L"1");
    session.Put(L"MaxFileSize", L"1", REG_EXPAND_SZ);
    session.Put(L"TraceLog", L"1");
    FailOnce();
    CHECK_TEXT(session.TakeText(), FailedOnce);

    LogSession::Unload();
    session.Put(L"Enabled", L"1");
    FailOnce();
    CHECK_TEXT(session.TakeText(), L"");

    LogSession::Unload();
    session.Enable();
    session.Put(L"FileName", 1u);
    FailOnce();
    CHECK_TEXT(session.TakeText(), L"");
    session.Put(L"FileName", session.Path(), REG_MULTI_SZ);
    LogSession::Unload();
    FailOnce();
    CHECK_TEXT(session.TakeText(), L"");
}

TEST_CASE("Log_file_name_of_the_expandable_type_is_taken_as_stored") {
    LogSession session;
    session.Enable();
    session.Put(L"FileName", session.Path(), REG_EXPAND_SZ);
    FailOnce();
    CHECK_TEXT(session.TakeText(), FailedOnce);

    LogSession::Unload();
    SetEnvironmentVariableW(L"LOG_TEST_NAME", L"expanded");
    session.Put(L"FileName", session.Folder().File(L"%LOG_TEST_NAME%.log"), REG_EXPAND_SZ);
    FailOnce();
    CHECK_FALSE(FileExists(session.Folder().File(L"expanded.log")));
    CHECK_TEXT(FileText(session.Folder().File(L"%LOG_TEST_NAME%.log")), FailedOnce);
}

TEST_CASE("Log_file_that_cannot_be_written_does_not_affect_the_caller") {
    LogSession session;
    session.Enable();
    session.Put(L"FileName", session.Folder().File(L"missing\\a.log"));
    FailOnce();
    FailOnce();
    LogSession::Unload();
    session.Put(L"FileName", session.Folder().File(L"a:*?.log"));
    FailOnce();
}

TEST_CASE("Log_file_of_the_maximum_size_becomes_the_backup") {
    LogSession session;
    session.Enable();
    session.Put(L"MaxFileSize", 1u);
    const std::wstring backup = session.Path() + L".bak";
    // The file is one line short of the limit of 1,048,576 bytes.
    const std::wstring rest(1048576 / sizeof(wchar_t) - std::wcslen(FailedOnce), L'x');
    const auto fill = [&](std::size_t characters) {
        std::FILE* file = _wfopen(session.Path().c_str(), L"wb");
        REQUIRE(file != nullptr);
        REQUIRE(std::fwrite(rest.data(), sizeof(wchar_t), characters, file) == characters);
        std::fclose(file);
    };
    fill(rest.size() - 1);
    FailOnce();
    CHECK_FALSE(FileExists(backup));
    LogSession::Unload();

    fill(rest.size());
    FailOnce();
    CHECK_FALSE(FileExists(session.Path()));
    REQUIRE(FileExists(backup));
    CHECK(FileText(backup) == rest + FailedOnce);

    FailOnce();
    CHECK_TEXT(session.TakeText(), FailedOnce);
    LogSession::Unload();

    // An older backup is replaced, even a write-protected one.
    SetFileAttributesW(backup.c_str(), FILE_ATTRIBUTE_READONLY);
    fill(rest.size());
    FailOnce();
    CHECK_FALSE(FileExists(session.Path()));
    CHECK(FileText(backup) == rest + FailedOnce);
    CHECK((GetFileAttributesW(backup.c_str()) & FILE_ATTRIBUTE_READONLY) == 0);
}

TEST_CASE("Log_maximum_size_0_never_makes_a_backup") {
    LogSession session;
    session.Enable();
    session.Put(L"MaxFileSize", 0u);
    const std::wstring large(2 * 1048576, L'x');
    std::FILE* file = _wfopen(session.Path().c_str(), L"wb");
    REQUIRE(file != nullptr);
    REQUIRE(std::fwrite(large.data(), 1, large.size(), file) == large.size());
    std::fclose(file);
    FailOnce();
    CHECK_FALSE(FileExists(session.Path() + L".bak"));
    CHECK(FileText(session.Path()).size() == large.size() / 2 + std::wcslen(FailedOnce));
}

TEST_CASE("Log_trace_output_omits_line_ends") {
    LogSession session;
    DebuggerOutput debugger;
    session.Put(L"Enabled", 1u);
    session.Put(L"Options", 24u);
    session.Put(L"TraceLog", 1u);
    FailWithGeneralLines();
    CHECK(debugger.lines == std::vector<std::string>{"[e] [CCopyLine::put_Xml] Invalid Xml fragment",
                                                     "[e] [CCopyLineImpl::put_Xml] Invalid Xml fragment",
                                                     "[CQxCom e] [CCopyLineImpl::get_Xml] Exception: "
                                                     "[CCopyLineImpl::put_Xml] Invalid Xml fragment"});
    CHECK_FALSE(FileExists(session.Path()));
}

TEST_CASE("Log_trace_and_file_get_the_same_lines") {
    LogSession session;
    DebuggerOutput debugger;
    session.Enable();
    session.Put(L"TraceLog", 1u);
    session.Put(L"OnlyErrorsToFile", 1u);
    FailOnce();
    CHECK(debugger.lines.size() == 1);
    CHECK_TEXT(session.TakeText(), FailedOnce);
    LogSession::Unload();
    session.Put(L"TraceLog", 0u);
    FailOnce();
    CHECK(debugger.lines.size() == 1);
}
