#include "tests/support/RecordTest.h"

#include <limits>

#include <utility>

namespace {

constexpr Property<ILogicalPrinter, BSTR> Texts[] = {
    PROPERTY(ILogicalPrinter, LogicalPrinterGuid),
    PROPERTY(ILogicalPrinter, CustomerCode),
    PROPERTY(ILogicalPrinter, MachineGuid),
    PROPERTY(ILogicalPrinter, PrinterName),
    PROPERTY(ILogicalPrinter, PortName),
    PROPERTY(ILogicalPrinter, ShareName),
    PROPERTY(ILogicalPrinter, ServerName),
    PROPERTY(ILogicalPrinter, Location),
    PROPERTY(ILogicalPrinter, Comments),
    PROPERTY(ILogicalPrinter, DriverName),
    PROPERTY(ILogicalPrinter, DriverFileName),
    PROPERTY(ILogicalPrinter, DriverDataFileName),
    PROPERTY(ILogicalPrinter, DriverFileDescription),
    PROPERTY(ILogicalPrinter, DriverCompanyName),
    PROPERTY(ILogicalPrinter, DriverFileVersion),
    PROPERTY(ILogicalPrinter, PrintMonitorName),
    PROPERTY(ILogicalPrinter, PrintMonitorFileName),
    PROPERTY(ILogicalPrinter, PrintMonitorFileDescription),
    PROPERTY(ILogicalPrinter, PrintMonitorCompanyName),
    PROPERTY(ILogicalPrinter, PrintMonitorFileVersion),
    PROPERTY(ILogicalPrinter, PrintProcessorName),
};

std::wstring Element(std::wstring_view name, std::wstring_view text) {
    std::wstring element = L"<";
    return element.append(name).append(L">").append(text).append(L"</").append(name).append(L">");
}

HRESULT Read(const ComPtr<ILogicalPrinter>& printer, std::wstring_view version, std::wstring_view elements) {
    return Put(printer, &ILogicalPrinter::put_Xml, RecordText(L"LogicalPrinter", version, elements));
}

ComPtr<ILogicalPrinter> PrinterOfVersion(std::wstring_view version, std::wstring_view elements = {}) {
    auto printer = CreateLogicalPrinter();
    REQUIRE_HR(Read(printer, version, elements), S_OK);
    return printer;
}

std::wstring Xml(const ComPtr<ILogicalPrinter>& printer) {
    return Text(printer, &ILogicalPrinter::get_Xml);
}

DATE First(const ComPtr<ILogicalPrinter>& printer) {
    return Value(printer, &ILogicalPrinter::get_FirstTransactionDate);
}

DATE Last(const ComPtr<ILogicalPrinter>& printer) {
    return Value(printer, &ILogicalPrinter::get_LastTransactionDate);
}

} // namespace

TEST_CASE("LogicalPrinter_properties_are_stored_independently") {
    constexpr Property<ILogicalPrinter, BSTR> others[] = {PROPERTY(ILogicalPrinter, TrackerVersion),
                                                          PROPERTY(ILogicalPrinter, PrinterInfo)};
    constexpr Property<ILogicalPrinter, LONG> numbers[] = {PROPERTY(ILogicalPrinter, Attributes),
                                                           PROPERTY(ILogicalPrinter, BuildNumber)};
    const auto printer = CreateLogicalPrinter();
    CheckTextProperties(printer, Texts);
    CheckTextProperties(printer, others);
    CheckNumberProperties(printer, numbers);
    for (const DATE date : {40000.25, 0.0, -1.5, 1e300}) {
        CHECK_HR(printer->put_FirstTransactionDate(date), S_OK);
        CHECK_HR(printer->put_LastTransactionDate(date - 1), S_OK);
        CHECK(First(printer) == date);
        CHECK(Last(printer) == date - 1);
    }
}

TEST_CASE("LogicalPrinter_version_decides_the_elements") {
    const struct {
        const wchar_t* version;
        bool older, colorCapable, tracker, securePrint;
    } cases[] = {{L"3.0", true, false, false, false},   {L"3.5.9", true, false, false, false},
                 {L"3.6", false, false, false, false},  {L"3.9.9", false, false, false, false},
                 {L"4.0", false, true, false, false},   {L"5.0", false, true, false, false},
                 {L"5.99", false, true, false, false},  {L"6.0", false, true, true, false},
                 {L"6.9.9", false, true, true, false},  {L"7.0", false, true, true, true},
                 {L"7.0.0.1", false, true, true, true}, {L"10.0", false, true, true, true}};
    for (const auto& test : cases) {
        INFO(Narrow(test.version));
        const auto printer = PrinterOfVersion(test.version);
        REQUIRE_HR(printer->put_BuildNumber(17), S_OK);
        REQUIRE_HR(Put(printer, &ILogicalPrinter::put_TrackerVersion, L"6.1"), S_OK);
        const std::wstring xml = Xml(printer);
        INFO(Narrow(xml));
        CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Version), test.version);
        CHECK_HAS(xml, L" Version=\"" + std::wstring(test.version) + L"\">");
        CHECK(Occurrences(xml, L"<ServerShareName/>") == test.older);
        CHECK(Occurrences(xml, L"<PrintProviderName/>") == test.older);
        CHECK(Occurrences(xml, L"<Attributes>0</Attributes>") == !test.older);
        CHECK(Occurrences(xml, L"<ColorCapable>false</ColorCapable>") == test.colorCapable);
        CHECK(Occurrences(xml, L"<TrackerVersion>6.1</TrackerVersion>") == test.tracker);
        CHECK(Occurrences(xml, L"<BuildNumber>17</BuildNumber>") == (!test.older && !test.tracker));
        CHECK(Occurrences(xml, L"<IsSecurePrint>false</IsSecurePrint>") == test.securePrint);
    }
}

TEST_CASE("LogicalPrinter_without_a_version_is_read_and_written_in_the_older_form") {
    const auto printer = CreateLogicalPrinter();
    REQUIRE_HR(Put(printer, &ILogicalPrinter::put_Xml,
                   L"<LogicalPrinter><ServerShareName>s</ServerShareName><Attributes>5</Attributes>"
                   L"</LogicalPrinter>"),
               S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Version), L"3.0");
    CHECK(Value(printer, &ILogicalPrinter::get_Attributes) == 0);
    const std::wstring xml = Xml(printer);
    CHECK_HAS(xml, L" Version=\"3.0\"><LogicalPrinterGuid/>");
    CHECK_HAS(xml, L"<ServerShareName>s</ServerShareName>");
    CHECK_HAS(xml, L"<PrintProviderFileVersion/>");
    CHECK_HAS_NOT(xml, L"Attributes");
}

TEST_CASE("LogicalPrinter_version_that_is_not_valid_fails_with_its_message") {
    for (const wchar_t* version : {L"", L"7", L"x", L"7.x", L"1.2.3.4.5", L"7.-1"}) {
        INFO(Narrow(version));
        const auto printer = CreateLogicalPrinter();
        REQUIRE_HR(Put(printer, &ILogicalPrinter::put_PrinterName, L"kept"), S_OK);
        CHECK_HR(Read(printer, version, L"<PrinterName>new</PrinterName>"), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"Version is not valid.");
        CHECK_TEXT(Text(printer, &ILogicalPrinter::get_PrinterName), L"kept");
        CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Version), L"<invalid>"); // stored before the check
        REQUIRE_HR(Read(printer, L"7.0", L""), S_OK);
        CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Version), L"7.0");
    }
}

TEST_CASE("LogicalPrinter_Xml_without_its_root_fails_with_its_message") {
    const auto printer = CreateLogicalPrinter();
    for (const wchar_t* text : {L"", L"<x/>", L"<logicalprinter/>", L"<LogicalPrinter", L"<LogicalPrinter>",
                                L"<x><LogicalPrinter/></x>"}) {
        INFO(Narrow(text));
        CHECK_HR(Put(printer, &ILogicalPrinter::put_Xml, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"LogicalPrinter element is missing.");
    }
    CHECK_HR(printer->put_Xml(nullptr), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"LogicalPrinter element is missing.");
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Version), L"7.0");
}

TEST_CASE("LogicalPrinter_each_text_is_written_and_read_under_its_name") {
    for (const auto& property : Texts)
        for (const wchar_t* version : {L"3.5", L"7.0"}) {
            INFO(Narrow(property.name));
            const auto printer = PrinterOfVersion(version, Element(property.name, L"a &lt; b"));
            CHECK_TEXT(Text(printer, property.get), L"a < b");
            CHECK_HAS(Xml(printer), Element(property.name, L"a &lt; b"));
            REQUIRE_HR(Read(printer, version, L""), S_OK);
            CHECK_TEXT(Text(printer, property.get), L""); // a missing text is empty
        }
}

TEST_CASE("LogicalPrinter_missing_numbers_and_flags_keep_their_values") {
    const auto printer = PrinterOfVersion(
        L"7.0",
        L"<Attributes>-5</Attributes><IsSecurePrint>TRUE</IsSecurePrint><ColorCapable>1</ColorCapable>");
    REQUIRE_HR(printer->put_BuildNumber(7), S_OK);
    CHECK(Value(printer, &ILogicalPrinter::get_Attributes) == -5);
    REQUIRE_HR(Read(printer, L"7.0", L""), S_OK);
    CHECK(Value(printer, &ILogicalPrinter::get_Attributes) == -5);
    CHECK(Value(printer, &ILogicalPrinter::get_IsSecurePrint) == VARIANT_TRUE);
    CHECK(Value(printer, &ILogicalPrinter::get_ColorCapable) == VARIANT_TRUE);
    REQUIRE_HR(Read(printer, L"5.0", L""), S_OK);
    CHECK(Value(printer, &ILogicalPrinter::get_BuildNumber) == 7);
    REQUIRE_HR(Read(printer, L"5.0",
                    L"<BuildNumber>-8x</BuildNumber><Attributes>x</Attributes><ColorCapable>no</ColorCapable>"
                    L"<IsSecurePrint>false</IsSecurePrint><TrackerVersion>t</TrackerVersion>"),
               S_OK);
    CHECK(Value(printer, &ILogicalPrinter::get_BuildNumber) == -8);
    CHECK(Value(printer, &ILogicalPrinter::get_Attributes) == 0);
    CHECK(Value(printer, &ILogicalPrinter::get_ColorCapable) == VARIANT_FALSE);
    CHECK(Value(printer, &ILogicalPrinter::get_IsSecurePrint) == VARIANT_TRUE); // not in this version
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_TrackerVersion), L"");
    REQUIRE_HR(Read(printer, L"6.0", L"<BuildNumber>9</BuildNumber><TrackerVersion>t</TrackerVersion>"),
               S_OK);
    CHECK(Value(printer, &ILogicalPrinter::get_BuildNumber) == -8);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_TrackerVersion), L"t");
    REQUIRE_HR(Read(printer, L"3.9", L"<ColorCapable>true</ColorCapable>"), S_OK);
    CHECK(Value(printer, &ILogicalPrinter::get_ColorCapable) == VARIANT_FALSE);
}

TEST_CASE("LogicalPrinter_fields_of_one_form_outlive_a_read_of_the_other") {
    const auto printer =
        PrinterOfVersion(L"3.5", L"<PortConfig>p</PortConfig><PortHostName>h</PortHostName>");
    REQUIRE_HR(Read(printer, L"7.0", L"<PrinterInfo/><Destination>d</Destination>"), S_OK);
    CHECK_HAS_NOT(Xml(printer), L"PortConfig");
    CHECK_HAS_NOT(Xml(printer), L"PortHostName");
    REQUIRE_HR(Read(printer, L"3.5", L"<PortHostName>h2</PortHostName>"), S_OK);
    CHECK_HAS_NOT(Xml(printer), L"PortConfig"); // missing in the last read
    CHECK_HAS_NOT(Xml(printer), L"Destination");
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination), L"<Destination>d</Destination>");
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_PrinterInfo), L"<PrinterInfo/>");
}

TEST_CASE("LogicalPrinter_fragments_are_read_as_whole_markup") {
    const auto printer = PrinterOfVersion(
        L"7.0",
        L"<Destination>\n<x:A b='1'/><!-- c --></Destination> \n<PrinterInfo a=\"1\">&amp;</PrinterInfo>"
        L"<PrinterInfo>second</PrinterInfo>");
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_PrinterInfo), L"<PrinterInfo a=\"1\">&amp;</PrinterInfo>");
    // Includes the white space after it, so that copies keep their line breaks.
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination),
               L"<Destination>\n<x:A b='1'/><!-- c --></Destination> \n");
    REQUIRE_HR(Read(printer, L"7.0", L""), S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_PrinterInfo), L"");
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination), L"");
}

TEST_CASE("LogicalPrinter_printer_info_that_is_not_well_formed_is_written_unchanged") {
    const auto printer = CreateLogicalPrinter();
    REQUIRE_HR(Put(printer, &ILogicalPrinter::put_PrinterInfo, L"<a>& not <closed"), S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_PrinterInfo), L"<a>& not <closed");
    CHECK_HAS(UncheckedText(printer, &ILogicalPrinter::get_Xml),
              L"<PrintProcessorName/><a>& not <closed</LogicalPrinter>");
    REQUIRE_HR(Put(printer, &ILogicalPrinter::put_Destination, L"<d/>"), S_OK);
    CHECK_HAS(UncheckedText(printer, &ILogicalPrinter::get_Xml),
              L"<PrintProcessorName/><a>& not <closed<d/></LogicalPrinter>");
}

TEST_CASE("LogicalPrinter_destination_has_to_be_well_formed") {
    const auto printer = CreateLogicalPrinter();
    for (const wchar_t* text :
         {L"<d/>", L" <d a=\"1\">x</d> ", L"<?xml version=\"1.0\"?><d></d>", L"<d/>trailing"}) {
        INFO(Narrow(text));
        CHECK_HR(Put(printer, &ILogicalPrinter::put_Destination, text), S_OK);
        CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination), text);
    }
    CHECK_HR(Put(printer, &ILogicalPrinter::put_Destination, L"<kept/>"), S_OK);
    for (const wchar_t* text : {L"abc", L"<d>", L"<d></e>", L"<", L" ", L"<!-- only -->", L"</d>"}) {
        INFO(Narrow(text));
        CHECK_HR(Put(printer, &ILogicalPrinter::put_Destination, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"Destination element is not well formed.");
        CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination), L"<kept/>");
    }
    CHECK_HR(Put(printer, &ILogicalPrinter::put_Destination, L""), S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination), L"");
    CHECK_HR(Put(printer, &ILogicalPrinter::put_Destination, L"<d/>"), S_OK);
    CHECK_HR(printer->put_Destination(nullptr), S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_Destination), L"");
}

TEST_CASE("LogicalPrinter_DriverInfoXml_gives_the_driver_s_part") {
    const auto printer = CreateLogicalPrinter();
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_DriverInfoXml),
               L"<DriverInfo><DriverName/><DriverFileName/><DriverDataFileName/><DriverFileDescription/>"
               L"<DriverCompanyName/><DriverFileVersion/></DriverInfo>");
    REQUIRE_HR(Put(printer, &ILogicalPrinter::put_Xml, ReadTestFile("golden/logical_printer_7.0.xml")), S_OK);
    CHECK_TEXT(Text(printer, &ILogicalPrinter::get_DriverInfoXml),
               L"<DriverInfo><DriverName>Driver A</DriverName><DriverFileName>a.dll</DriverFileName>"
               L"<DriverDataFileName>a.dat</DriverDataFileName>"
               L"<DriverFileDescription>Driver of A</DriverFileDescription>"
               L"<DriverCompanyName>A Ltd</DriverCompanyName>"
               L"<DriverFileVersion>1.2.3.4</DriverFileVersion></DriverInfo>");
}

TEST_CASE("LogicalPrinter_first_write_sets_both_dates_and_keeps_them") {
    for (const wchar_t* version : {L"3.5", L"7.0"}) {
        const auto printer = PrinterOfVersion(version);
        REQUIRE_HR(printer->put_FirstTransactionDate(0), S_OK);
        REQUIRE_HR(printer->put_LastTransactionDate(5e-6), S_OK); // within half a second of zero
        const std::wstring xml = Xml(printer);
        const DATE first = First(printer);
        CHECK(IsLocalNow(first));
        CHECK(Last(printer) == first);
        CHECK_HAS(xml, Element(L"FirstTransactionDate", DateText(first)) +
                           Element(L"LastTransactionDate", DateText(first)));
        CHECK_TEXT(Xml(printer), xml);
    }
}

TEST_CASE("LogicalPrinter_missing_first_date_becomes_the_last") {
    const auto printer = CreateLogicalPrinter();
    REQUIRE_HR(printer->put_LastTransactionDate(40000.5), S_OK);
    Xml(printer);
    CHECK(First(printer) == 40000.5);
    CHECK(Last(printer) == 40000.5);
}

TEST_CASE("LogicalPrinter_last_date_is_never_before_the_first") {
    const auto printer = CreateLogicalPrinter();
    const auto normalized = [&](DATE first, DATE last) {
        REQUIRE_HR(printer->put_FirstTransactionDate(first), S_OK);
        REQUIRE_HR(printer->put_LastTransactionDate(last), S_OK);
        Xml(printer);
        return std::pair(First(printer), Last(printer));
    };
    CHECK(normalized(40001, 40000) == std::pair(40001.0, 40001.0));
    CHECK(normalized(40000, 40001) == std::pair(40000.0, 40001.0));
    CHECK(normalized(40000, 0) == std::pair(40000.0, 40000.0));
    CHECK(normalized(0, -5) == std::pair(0.0, 0.0)); // a last date before zero fills in nothing
    CHECK(normalized(6e-6, 7e-6) == std::pair(6e-6, 7e-6));
}

// Before 30 December 1899 the fraction is still the time of day, so -1.75 is later than -1.25.
TEST_CASE("LogicalPrinter_dates_before_1899_are_compared_as_points_in_time") {
    const auto printer = CreateLogicalPrinter();
    const auto normalized = [&](DATE first, DATE last) {
        REQUIRE_HR(printer->put_FirstTransactionDate(first), S_OK);
        REQUIRE_HR(printer->put_LastTransactionDate(last), S_OK);
        Xml(printer);
        return std::pair(First(printer), Last(printer));
    };
    CHECK(normalized(-1.25, -1.75) == std::pair(-1.25, -1.75));
    CHECK(normalized(-1.75, -1.25) == std::pair(-1.75, -1.75));
    CHECK(normalized(-2.0, -1.75) == std::pair(-2.0, -1.75));
    CHECK(normalized(-1.75, -2.75) == std::pair(-1.75, -1.75));
    CHECK(normalized(-0.75, 0.25) == std::pair(-0.75, -0.75)); // both on day zero
    CHECK(normalized(0.25, -0.75) == std::pair(0.25, -0.75));
    CHECK(normalized(0, -0.75) == std::pair(-0.75, -0.75)); // later than the zero date
    const auto read = PrinterOfVersion(L"7.0", Element(L"FirstTransactionDate", L"1850-03-04T06:00:00") +
                                                   Element(L"LastTransactionDate", L"1850-03-04T18:00:00"));
    CHECK_TEXT(DateText(First(read)), L"1850-03-04T06:00:00");
    CHECK_TEXT(DateText(Last(read)), L"1850-03-04T18:00:00");
}

TEST_CASE("LogicalPrinter_dates_outside_the_calendar_have_no_order") {
    const auto printer = CreateLogicalPrinter();
    constexpr DATE infinity = std::numeric_limits<DATE>::infinity();
    for (const DATE outside : {infinity, -infinity, 1e300, -1e300}) {
        REQUIRE_HR(printer->put_FirstTransactionDate(outside), S_OK);
        REQUIRE_HR(printer->put_LastTransactionDate(40000), S_OK);
        CHECK_HAS(Xml(printer), Element(L"FirstTransactionDate", L"Invalid DateTime") +
                                    Element(L"LastTransactionDate", L"2009-07-06T00:00:00"));
        CHECK(First(printer) == outside);
        CHECK(Last(printer) == 40000);
    }
}

TEST_CASE("LogicalPrinter_reading_normalizes_the_dates_too") {
    for (const wchar_t* version : {L"3.5", L"7.0"}) {
        INFO(Narrow(version));
        auto printer = PrinterOfVersion(version, Element(L"FirstTransactionDate", L"2011-01-01T00:00:00") +
                                                     Element(L"LastTransactionDate", L"2010-01-01T00:00:00"));
        CHECK_TEXT(DateText(First(printer)), L"2011-01-01T00:00:00");
        CHECK_TEXT(DateText(Last(printer)), L"2011-01-01T00:00:00");
        REQUIRE_HR(Read(printer, version,
                        Element(L"FirstTransactionDate", L"x") +
                            Element(L"LastTransactionDate", L"2010-01-01T01:02:03.999")),
                   S_OK);
        CHECK_TEXT(DateText(First(printer)), L"2010-01-01T01:02:03");
        CHECK_TEXT(DateText(Last(printer)), L"2010-01-01T01:02:03");
        REQUIRE_HR(Read(printer, version, L""), S_OK);
        CHECK(IsLocalNow(First(printer)));
        CHECK(Last(printer) == First(printer));
    }
}
