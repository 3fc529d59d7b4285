// The log target of a print job: one value, readable through the property of its type only.

#include "tests/support/RecordTest.h"

namespace {

constexpr auto NotOfThisType = static_cast<HRESULT>(0x800710DD);

std::wstring NotSupported(std::wstring_view property, std::wstring_view type) {
    std::wstring text = L"The ";
    return text.append(property)
               .append(L" property is not supported when the LogTargetType is ")
               .append(type) +
           L".";
}

std::wstring UnknownType(std::wstring_view name) {
    std::wstring text = L"The PrintJob LogTargetType '";
    return text.append(name).append(L"' is not supported.");
}

/// Checks that the getters of the other types fail with their message and keep the out-value.
void CheckOnlyPropertyOf(const ComPtr<IPrintJob>& job, LONG type, std::wstring_view typeName) {
    CHECK(Value(job, &IPrintJob::get_LogTargetType) == type);
    BSTR const untouched = reinterpret_cast<BSTR>(0x5A5A5A5A);
    if (type != 1) {
        BSTR text = untouched;
        CHECK_HR(job->get_LogicalPrinterGuid(&text), NotOfThisType);
        CHECK(text == untouched);
        CHECK_TEXT(TakeErrorDescription(), NotSupported(L"LogicalPrinterGuid", typeName));
    }
    if (type != 2) {
        LONG number = 0x5A5A5A5A;
        CHECK_HR(job->get_DeviceId(&number), NotOfThisType);
        CHECK(number == 0x5A5A5A5A);
        CHECK_TEXT(TakeErrorDescription(), NotSupported(L"DeviceId", typeName));
    }
    if (type != 3) {
        BSTR text = untouched;
        CHECK_HR(job->get_DeviceAddress(&text), NotOfThisType);
        CHECK(text == untouched);
        CHECK_TEXT(TakeErrorDescription(), NotSupported(L"DeviceAddress", typeName));
    }
}

/// The written value, from version 4.2 on.
void CheckWritten(const ComPtr<IPrintJob>& job, const wchar_t* element) {
    CHECK_HAS(Text(job, &IPrintJob::get_Xml), element);
}

ComPtr<IPrintJob> JobWithTarget(const wchar_t* type, const wchar_t* value) {
    std::wstring element = L"<LogTarget Type=\"";
    element.append(type).append(L"\">").append(value).append(L"</LogTarget>");
    return PrintJobOfVersion(L"4.3", element);
}

/// A value that only a document can supply; the schemas refuse it.
void CheckWrittenUnchanged(const wchar_t* type, const wchar_t* value, const wchar_t* element) {
    CHECK_HAS(UncheckedText(JobWithTarget(type, value), &IPrintJob::get_Xml), element);
}

} // namespace

TEST_CASE("LogTarget_of_a_new_record_is_none") {
    const auto job = CreatePrintJob();
    CheckOnlyPropertyOf(job, 0, L"None");
    CheckWritten(job, L"<LogTarget Type=\"None\"/>");
}

TEST_CASE("LogTarget_logical_printer_is_seen_through_its_property_only") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_LogicalPrinterGuid, L"{7D9A}"), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_LogicalPrinterGuid), L"{7D9A}");
    CheckOnlyPropertyOf(job, 1, L"LogicalPrinter");
    CheckWritten(job, L"<LogTarget Type=\"LogicalPrinter\">{7D9A}</LogTarget>");
}

TEST_CASE("LogTarget_device_is_seen_through_its_property_only") {
    const auto job = CreatePrintJob();
    CHECK_HR(job->put_DeviceId(42), S_OK);
    CHECK(Value(job, &IPrintJob::get_DeviceId) == 42);
    CheckOnlyPropertyOf(job, 2, L"Device");
    CheckWritten(job, L"<LogTarget Type=\"Device\">42</LogTarget>");
}

TEST_CASE("LogTarget_device_address_is_seen_through_its_property_only") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_DeviceAddress, L"10.0.0.7"), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_DeviceAddress), L"10.0.0.7");
    CheckOnlyPropertyOf(job, 3, L"DeviceAddress");
    CheckWritten(job, L"<LogTarget Type=\"DeviceAddress\">10.0.0.7</LogTarget>");
}

TEST_CASE("LogTarget_null_text_is_the_empty_value_of_its_type") {
    const auto job = CreatePrintJob();
    CHECK_HR(job->put_LogicalPrinterGuid(nullptr), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_LogicalPrinterGuid), L"");
    CHECK(Value(job, &IPrintJob::get_LogTargetType) == 1);
    CHECK_HR(job->put_DeviceAddress(nullptr), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_DeviceAddress), L"");
    CHECK(Value(job, &IPrintJob::get_LogTargetType) == 3);
}

TEST_CASE("LogTarget_device_keeps_every_number") {
    const auto job = CreatePrintJob();
    for (const LONG id : {0L, -1L, 42L, LONG_MAX, LONG_MIN}) {
        CHECK_HR(job->put_DeviceId(id), S_OK);
        CHECK(Value(job, &IPrintJob::get_DeviceId) == id);
        CheckWritten(job, (L"<LogTarget Type=\"Device\">" + std::to_wstring(id) + L"</LogTarget>").c_str());
    }
}

TEST_CASE("LogTarget_reset_clears_type_and_value_and_keeps_the_version") {
    const auto job = PrintJobOfVersion(L"3.5");
    CHECK_HR(Put(job, &IPrintJob::put_DeviceAddress, L"10.0.0.7"), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"4.2");
    CHECK_HR(job->ResetLogTarget(), S_OK);
    CheckOnlyPropertyOf(job, 0, L"None");
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"4.2");
    CheckWritten(job, L"<LogTarget Type=\"None\"/>");

    const auto older = PrintJobOfVersion(L"3.5", L"<LogicalPrinterGuid>{7D9A}</LogicalPrinterGuid>");
    CHECK_HR(older->ResetLogTarget(), S_OK);
    CHECK_TEXT(Text(older, &IPrintJob::get_Version), L"3.5");
    CheckWritten(older, L"<LogicalPrinterGuid/>");
}

TEST_CASE("LogTarget_device_types_raise_an_older_version_and_never_lower_one") {
    const struct {
        const wchar_t* before;
        const wchar_t* after;
    } cases[] = {{L"3.5", L"4.2"},     {L"4.1.9", L"4.2"}, {L"4.2", L"4.2"},
                 {L"4.2.1", L"4.2.1"}, {L"5.1", L"5.1"},   {L"9.0", L"9.0"}};
    for (const auto& test : cases) {
        INFO(Narrow(test.before));
        auto job = PrintJobOfVersion(test.before);
        CHECK_HR(Put(job, &IPrintJob::put_LogicalPrinterGuid, L"{7D9A}"), S_OK);
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), test.before);
        CHECK_HR(job->ResetLogTarget(), S_OK);
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), test.before);
        CHECK_HR(job->put_DeviceId(42), S_OK);
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), test.after);
        job = PrintJobOfVersion(test.before);
        CHECK_HR(Put(job, &IPrintJob::put_DeviceAddress, L"10.0.0.7"), S_OK);
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), test.after);
    }
}

TEST_CASE("LogTarget_failing_getter_changes_nothing") {
    const auto job = PrintJobOfVersion(L"3.5", L"<LogicalPrinterGuid>{7D9A}</LogicalPrinterGuid>");
    LONG number = 0;
    CHECK_HR(job->get_DeviceId(&number), NotOfThisType);
    CHECK_TEXT(Text(job, &IPrintJob::get_LogicalPrinterGuid), L"{7D9A}");
    CHECK_TEXT(Text(job, &IPrintJob::get_Version), L"3.5");
}

TEST_CASE("LogTarget_is_read_by_its_type_name") {
    CheckOnlyPropertyOf(JobWithTarget(L"None", L"x"), 0, L"None");
    CheckWrittenUnchanged(L"None", L"x", L"<LogTarget Type=\"None\">x</LogTarget>");
    CHECK_TEXT(Text(JobWithTarget(L"LogicalPrinter", L"x"), &IPrintJob::get_LogicalPrinterGuid), L"x");
    CHECK(Value(JobWithTarget(L"Device", L"17"), &IPrintJob::get_DeviceId) == 17);
    CHECK_TEXT(Text(JobWithTarget(L"DeviceAddress", L"x"), &IPrintJob::get_DeviceAddress), L"x");
    CheckOnlyPropertyOf(JobWithTarget(L"DeviceAddress", L""), 3, L"DeviceAddress");
}

TEST_CASE("LogTarget_with_an_unknown_type_name_fails_with_its_message") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_LogicalPrinterGuid, L"kept"), S_OK);
    for (const wchar_t* name : {L"device", L"DEVICE", L"Device ", L"2", L"", L"Printer", L"NoneX", L"%s"}) {
        INFO(Narrow(name));
        CHECK_HR(Put(job, &IPrintJob::put_Xml,
                     RecordText(L"PrintJob", L"4.2",
                                L"<LogTarget Type=\"" + std::wstring(name) + L"\">new</LogTarget>")),
                 E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), UnknownType(name));
        CHECK_TEXT(Text(job, &IPrintJob::get_LogicalPrinterGuid), L"kept");
    }
    CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"4.2", L"<LogTarget>new</LogTarget>")),
             E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), UnknownType(L""));
    CHECK_HR(
        Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", L"4.2", L"<LogTarget Type=\"a &lt; b\"/>")),
        E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), UnknownType(L"a < b"));
}

TEST_CASE("LogTarget_element_and_its_older_form_are_read_in_their_versions_only") {
    const std::wstring both = L"<LogicalPrinterGuid>older</LogicalPrinterGuid>"
                              L"<LogTarget Type=\"DeviceAddress\">newer</LogTarget>";
    const auto older = PrintJobOfVersion(L"4.1", both);
    CHECK_TEXT(Text(older, &IPrintJob::get_LogicalPrinterGuid), L"older");
    CHECK_TEXT(Text(older, &IPrintJob::get_Version), L"4.1");
    const auto newer = PrintJobOfVersion(L"4.2", both);
    CHECK_TEXT(Text(newer, &IPrintJob::get_DeviceAddress), L"newer");

    CHECK(Value(PrintJobOfVersion(L"4.1", L"<LogicalPrinterGuid/>"), &IPrintJob::get_LogTargetType) == 0);
    CHECK(Value(PrintJobOfVersion(L"4.1"), &IPrintJob::get_LogTargetType) == 0);
    CHECK(Value(PrintJobOfVersion(L"4.2", L"<LogicalPrinterGuid>x</LogicalPrinterGuid>"),
                &IPrintJob::get_LogTargetType) == 0);
}

TEST_CASE("LogTarget_that_is_missing_replaces_the_held_one") {
    const auto job = CreatePrintJob();
    for (const wchar_t* version : {L"4.1", L"4.2"}) {
        CHECK_HR(job->put_DeviceId(42), S_OK);
        CHECK_HR(Put(job, &IPrintJob::put_Xml, RecordText(L"PrintJob", version)), S_OK);
        CheckOnlyPropertyOf(job, 0, L"None");
        CHECK_TEXT(Text(job, &IPrintJob::get_Version), version);
    }
}

TEST_CASE("LogTarget_device_in_a_record_of_version_4_3_keeps_it") {
    CHECK_TEXT(Text(JobWithTarget(L"Device", L"1"), &IPrintJob::get_Version), L"4.3");
}

TEST_CASE("LogTarget_device_number_is_read_in_the_base_of_its_text") {
    const struct {
        const wchar_t* text;
        LONG number;
    } cases[] = {{L"0x10", 16},
                 {L"0X1f", 31},
                 {L"010", 8},
                 {L"08", 0},
                 {L"10", 10},
                 {L"  12", 12},
                 {L"-5", -5},
                 {L"+5", 5},
                 {L"-0x10", -16},
                 {L"12 devices", 12},
                 {L"", 0},
                 {L"x", 0},
                 {L"0x", 0},
                 {L"99999999999", LONG_MAX},
                 {L"-99999999999", LONG_MIN}};
    for (const auto& test : cases) {
        INFO(Narrow(test.text));
        CHECK(Value(JobWithTarget(L"Device", test.text), &IPrintJob::get_DeviceId) == test.number);
    }
    CheckWrittenUnchanged(L"Device", L"0x10", L"<LogTarget Type=\"Device\">0x10</LogTarget>");
}
