#include "tests/support/RecordTest.h"

#include <algorithm>

namespace {

constexpr Property<IWindowsPrintInfo, LONG> PlainNumbers[] = {
    PROPERTY(IWindowsPrintInfo, DevModeOrientation),
    PROPERTY(IWindowsPrintInfo, DevModePaperSize),
    PROPERTY(IWindowsPrintInfo, DevModePaperLength),
    PROPERTY(IWindowsPrintInfo, DevModePaperWidth),
    PROPERTY(IWindowsPrintInfo, DevModeScale),
    PROPERTY(IWindowsPrintInfo, DevModeCopies),
    PROPERTY(IWindowsPrintInfo, DevModeDefaultSource),
    PROPERTY(IWindowsPrintInfo, DevModePrintQuality),
    PROPERTY(IWindowsPrintInfo, DevModeColor),
    PROPERTY(IWindowsPrintInfo, DevModeDuplex),
    PROPERTY(IWindowsPrintInfo, DevModeTumble),
    PROPERTY(IWindowsPrintInfo, DevModeXResolution),
    PROPERTY(IWindowsPrintInfo, DevModeYResolution),
    PROPERTY(IWindowsPrintInfo, DevModeTTOption),
    PROPERTY(IWindowsPrintInfo, DevModeCollate),
    PROPERTY(IWindowsPrintInfo, DevModeMediaType),
    PROPERTY(IWindowsPrintInfo, AttributeInfoPageOrderFlags),
};

/// Properties with a minimum.
constexpr Property<IWindowsPrintInfo, LONG> BoundedNumbers[] = {
    PROPERTY(IWindowsPrintInfo, JobInfoPages),
    PROPERTY(IWindowsPrintInfo, JobInfoOriginals),
    PROPERTY(IWindowsPrintInfo, DevModeFields),
    PROPERTY(IWindowsPrintInfo, AttributeInfoPagesPerSide),
};

LONG LowestOf(const Property<IWindowsPrintInfo, LONG>& property) {
    return std::wstring_view(property.name) == L"AttributeInfoPagesPerSide" ? 1 : 0;
}

std::wstring Element(std::wstring_view name, LONG value) {
    std::wstring text = L"<";
    return text.append(name)
        .append(L">")
        .append(std::to_wstring(value))
        .append(L"</")
        .append(name)
        .append(L">");
}

std::wstring Whole(std::wstring_view elements) {
    return L"<WindowsPrintInfo>" + std::wstring(elements) + L"</WindowsPrintInfo>";
}

ComPtr<IWindowsPrintInfo> InfoFrom(std::wstring_view elements) {
    auto info = CreateWindowsPrintInfo();
    INFO(Narrow(elements));
    REQUIRE_HR(Put(info, &IWindowsPrintInfo::put_Xml, Whole(elements)), S_OK);
    return info;
}

void CheckPages(const ComPtr<IWindowsPrintInfo>& info, LONG pages, LONG originals) {
    CHECK(Value(info, &IWindowsPrintInfo::get_JobInfoPages) == pages);
    CHECK(Value(info, &IWindowsPrintInfo::get_JobInfoOriginals) == originals);
}

bool On(const ComPtr<IWindowsPrintInfo>& info,
        HRESULT (STDMETHODCALLTYPE IWindowsPrintInfo::*getter)(VARIANT_BOOL*)) {
    const VARIANT_BOOL flag = Value(info, getter);
    CHECK((flag == VARIANT_TRUE || flag == VARIANT_FALSE));
    return flag == VARIANT_TRUE;
}

} // namespace

TEST_CASE("WindowsPrintInfo_plain_numbers_are_stored_independently") {
    CheckNumberProperties(CreateWindowsPrintInfo(), PlainNumbers);
}

TEST_CASE("WindowsPrintInfo_each_element_is_written_and_read_under_its_name") {
    for (const auto& property : PlainNumbers) {
        std::wstring name = property.name;
        if (name == L"DevModeTTOption")
            name = L"DevModeTtOption";
        const auto info = CreateWindowsPrintInfo();
        REQUIRE_HR((info.Get()->*property.put)(-17), S_OK);
        CHECK_HAS(Text(info, &IWindowsPrintInfo::get_Xml), Element(name, -17));
        CHECK(Value(InfoFrom(Element(name, -17)), property.get) == -17);
    }
    for (const auto& property : BoundedNumbers) {
        const auto info = CreateWindowsPrintInfo();
        REQUIRE_HR((info.Get()->*property.put)(17), S_OK);
        CHECK_HAS(Text(info, &IWindowsPrintInfo::get_Xml), Element(property.name, 17));
        CHECK(Value(InfoFrom(Element(property.name, 17)), property.get) == 17);
        for (const LONG value : {1L, 0L, -1L, LONG_MIN})
            CHECK(Value(InfoFrom(Element(property.name, value)), property.get) ==
                  std::max(value, LowestOf(property)));
    }
    CHECK_TEXT(Text(InfoFrom(L"<DevModeFormName>a &amp; b</DevModeFormName>"),
                    &IWindowsPrintInfo::get_DevModeFormName),
               L"a & b");
}

TEST_CASE("WindowsPrintInfo_option_under_the_property_s_spelling_is_not_read") {
    const auto info = InfoFrom(L"<DevModeTtOption>3</DevModeTtOption>");
    CHECK(Value(info, &IWindowsPrintInfo::get_DevModeTTOption) == 3);
    REQUIRE_HR(Put(info, &IWindowsPrintInfo::put_Xml, Whole(L"<DevModeTTOption>4</DevModeTTOption>")), S_OK);
    CHECK(Value(info, &IWindowsPrintInfo::get_DevModeTTOption) == 0);
}

TEST_CASE("WindowsPrintInfo_first_match_of_an_element_counts_in_any_layout") {
    const auto info = InfoFrom(L"<Unknown><DevModeScale>1</DevModeScale></Unknown><!-- x -->"
                               L"<AttributeInfoPageOrderFlags>2</AttributeInfoPageOrderFlags>"
                               L"<p:DevModeScale> 50 percent</p:DevModeScale><DevModeScale>60</DevModeScale>"
                               L"<DevModeFormName><![CDATA[<A4>]]></DevModeFormName>"
                               L"<DevModeColor>x</DevModeColor><DevModeDuplex/>");
    CHECK(Value(info, &IWindowsPrintInfo::get_DevModeScale) == 50);
    CHECK(On(info, &IWindowsPrintInfo::get_IsBooklet));
    CHECK_TEXT(Text(info, &IWindowsPrintInfo::get_DevModeFormName), L"<A4>");
    CHECK(Value(info, &IWindowsPrintInfo::get_DevModeColor) == 0);
    CHECK(Value(info, &IWindowsPrintInfo::get_DevModeDuplex) == 0);
}

TEST_CASE("WindowsPrintInfo_reading_overwrites_every_field") {
    const auto info = CreateWindowsPrintInfo();
    REQUIRE_HR(Put(info, &IWindowsPrintInfo::put_Xml, ReadTestFile("golden/windows_print_info.xml")), S_OK);
    CHECK(Value(info, &IWindowsPrintInfo::get_DevModeMediaType) == 256);
    REQUIRE_HR(Put(info, &IWindowsPrintInfo::put_Xml, L"<WindowsPrintInfo/>"), S_OK);
    CHECK_TEXT(Text(info, &IWindowsPrintInfo::get_Xml), ReadTestFile("golden/windows_print_info_new.xml"));
}

TEST_CASE("WindowsPrintInfo_pages_count_all_copies_where_the_originals_were_unknown") {
    const auto pagesAndOriginals = [](LONG pages, LONG originals, LONG fields, LONG copies) {
        return InfoFrom(Element(L"JobInfoPages", pages) + Element(L"JobInfoOriginals", originals) +
                        Element(L"DevModeFields", fields) + Element(L"DevModeCopies", copies));
    };
    CheckPages(pagesAndOriginals(10, 0, 0x100, 3), 30, 10);
    CheckPages(pagesAndOriginals(10, 0, 0, 3), 10, 10);          // the copies bit is clear
    CheckPages(pagesAndOriginals(10, 0, 0x7FFFFEFF, 3), 10, 10); // every bit but that
    CheckPages(pagesAndOriginals(10, 0, 0x101, 3), 30, 10);
    CheckPages(pagesAndOriginals(10, 0, 0x100, 0), 10, 10);
    CheckPages(pagesAndOriginals(10, 0, 0x100, -3), 10, 10);
    CheckPages(pagesAndOriginals(10, 4, 0x100, 3), 10, 4); // the originals are known
    CheckPages(pagesAndOriginals(10, -4, 0x100, 3), 30, 10);
    CheckPages(pagesAndOriginals(0, 0, 0x100, 3), 0, 0);
    CheckPages(pagesAndOriginals(-10, 0, 0x100, 3), 0, 0);

    const auto info = pagesAndOriginals(10, 0, 0x100, 3);
    const std::wstring xml = Text(info, &IWindowsPrintInfo::get_Xml);
    REQUIRE_HR(Put(info, &IWindowsPrintInfo::put_Xml, xml), S_OK);
    CheckPages(info, 30, 10);
    CHECK_TEXT(Text(info, &IWindowsPrintInfo::get_Xml), xml);
}

TEST_CASE("WindowsPrintInfo_pages_beyond_the_range_stay_positive") {
    const auto info = InfoFrom(L"<JobInfoPages>2147483647</JobInfoPages><DevModeFields>256</DevModeFields>"
                               L"<DevModeCopies>2147483647</DevModeCopies>");
    CheckPages(info, LONG_MAX, LONG_MAX);
}

TEST_CASE("WindowsPrintInfo_duplex_needs_its_bit_and_any_value") {
    const auto info = CreateWindowsPrintInfo();
    for (const LONG fields : {0L, 0x1000L, 0x0FFFL, 0x7FFFEFFFL, 0x1001L})
        for (const LONG duplex : {0L, 1L, 2L, 3L, -1L}) {
            REQUIRE_HR(info->put_DevModeFields(fields), S_OK);
            REQUIRE_HR(info->put_DevModeDuplex(duplex), S_OK);
            CHECK(On(info, &IWindowsPrintInfo::get_IsDuplex) == ((fields & 0x1000) != 0 && duplex != 0));
        }
}

TEST_CASE("WindowsPrintInfo_color_needs_its_bit_and_any_value") {
    const auto info = CreateWindowsPrintInfo();
    for (const LONG fields : {0L, 0x800L, 0x7FFL, 0x7FFFF7FFL, 0x801L})
        for (const LONG color : {0L, 1L, 2L, -1L}) {
            REQUIRE_HR(info->put_DevModeFields(fields), S_OK);
            REQUIRE_HR(info->put_DevModeColor(color), S_OK);
            CHECK(On(info, &IWindowsPrintInfo::get_IsColor) == ((fields & 0x800) != 0 && color != 0));
        }
}

TEST_CASE("WindowsPrintInfo_booklet_is_one_page_order_exactly") {
    const auto info = CreateWindowsPrintInfo();
    for (const LONG flags : {0L, 1L, 2L, 3L, 6L, -2L}) {
        REQUIRE_HR(info->put_AttributeInfoPageOrderFlags(flags), S_OK);
        CHECK(On(info, &IWindowsPrintInfo::get_IsBooklet) == (flags == 2));
    }
}

TEST_CASE("WindowsPrintInfo_copies_need_their_bit") {
    const auto info = CreateWindowsPrintInfo();
    for (const LONG fields : {0L, 0x100L, 0xFFL, 0x7FFFFEFFL, 0x1900L})
        for (const LONG copies : {-3L, 0L, 1L, 3L, LONG_MAX}) {
            REQUIRE_HR(info->put_DevModeFields(fields), S_OK);
            REQUIRE_HR(info->put_DevModeCopies(copies), S_OK);
            const LONG expected = (fields & 0x100) != 0 ? std::max(copies, 1L) : 1;
            CHECK(Value(info, &IWindowsPrintInfo::get_JobInfoCopies) == expected);
        }
}

TEST_CASE("WindowsPrintInfo_without_its_root_fails_and_resets_the_record") {
    for (const wchar_t* text : {L"", L"<x/>", L"<x><JobInfoPages>5</JobInfoPages></x>", L"<WindowsPrintInfo>",
                                L"<windowsprintinfo/>", L"<x><WindowsPrintInfo/></x>"}) {
        INFO(Narrow(text));
        const auto info = CreateWindowsPrintInfo();
        REQUIRE_HR(Put(info, &IWindowsPrintInfo::put_Xml, ReadTestFile("golden/windows_print_info.xml")),
                   S_OK);
        CHECK_HR(Put(CreatePrintJob(), &IPrintJob::put_Xml, L""), E_FAIL); // sets error information
        CHECK_HR(Put(info, &IWindowsPrintInfo::put_Xml, text), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"<none>");
        CHECK_TEXT(Text(info, &IWindowsPrintInfo::get_Xml),
                   ReadTestFile("golden/windows_print_info_new.xml"));
    }
    CHECK_HR(CreateWindowsPrintInfo()->put_Xml(nullptr), E_FAIL);
}
