#include "tests/support/RecordTest.h"

namespace {

struct Count {
    const wchar_t* name;
    HRESULT (STDMETHODCALLTYPE ICopyLine::*get)(LONG*);
    HRESULT (STDMETHODCALLTYPE ICopyLine::*put)(LONG);
};

constexpr Count Counts[] = {
    PROPERTY(ICopyLine, Sheets),
    PROPERTY(ICopyLine, PagesBW),
    PROPERTY(ICopyLine, PagesColor),
    PROPERTY(ICopyLine, PagesBlank),
};

ComPtr<ICopyLine> CopyLineFrom(std::wstring_view xml) {
    auto line = CreateCopyLine();
    REQUIRE_HR(Put(line, &ICopyLine::put_Xml, xml), S_OK);
    return line;
}

/// "paper|dimensions|attributes|sheets|bw|color|blank".
std::wstring Fields(const ComPtr<ICopyLine>& line) {
    std::wstring text = Text(line, &ICopyLine::get_PaperSize) + L"|" +
                        Text(line, &ICopyLine::get_PaperDimensions) + L"|" +
                        Text(line, &ICopyLine::get_Attributes);
    for (const Count& count : Counts)
        text += L"|" + std::to_wstring(Value(line, count.get));
    return text;
}

} // namespace

TEST_CASE("CopyLine_object_texts_are_stored_independently") {
    const Property<ICopyLine, BSTR> texts[] = {
        PROPERTY(ICopyLine, PaperSize),
        PROPERTY(ICopyLine, PaperDimensions),
        PROPERTY(ICopyLine, Attributes),
    };
    CheckTextProperties(CreateCopyLine(), texts);
}

TEST_CASE("CopyLine_object_counts_are_stored_independently") {
    const auto line = CreateCopyLine();
    LONG value = 3;
    for (const Count& count : Counts)
        CHECK_HR((line.Get()->*count.put)(value++), S_OK);
    CHECK_TEXT(Fields(line), L"|||3|4|5|6");
}

TEST_CASE("CopyLine_object_total_counts_all_pages_but_no_sheets") {
    const auto line = CreateCopyLine();
    line->put_PagesBW(3);
    line->put_PagesColor(4);
    line->put_PagesBlank(5);
    line->put_Sheets(100);
    CHECK(Value(line, &ICopyLine::get_PagesTotal) == 12);
    line->put_PagesBlank(0);
    CHECK(Value(line, &ICopyLine::get_PagesTotal) == 7);
}

TEST_CASE("CopyLine_object_is_color_with_color_pages") {
    const auto line = CreateCopyLine();
    Put(line, &ICopyLine::put_Attributes, L"Color");
    line->put_PagesBW(5);
    CHECK(Value(line, &ICopyLine::get_IsColor) == VARIANT_FALSE);
    line->put_PagesColor(1);
    CHECK(Value(line, &ICopyLine::get_IsColor) == VARIANT_TRUE);
}

TEST_CASE("CopyLine_object_is_duplex_when_the_attributes_contain_the_letters") {
    const auto line = CreateCopyLine();
    const auto isDuplex = [&](const wchar_t* attributes) {
        REQUIRE_HR(Put(line, &ICopyLine::put_Attributes, attributes), S_OK);
        return Value(line, &ICopyLine::get_IsDuplex);
    };
    CHECK(isDuplex(L"Color,Duplex") == VARIANT_TRUE);
    CHECK(isDuplex(L"NoDuplex") == VARIANT_TRUE);
    CHECK(isDuplex(L"duplex") == VARIANT_FALSE);
    CHECK(isDuplex(L"DUPLEX") == VARIANT_FALSE);
    CHECK(isDuplex(L"Simplex") == VARIANT_FALSE);
    CHECK(isDuplex(L"") == VARIANT_FALSE);
}

TEST_CASE("CopyLine_object_database_codes_come_from_the_catalogue") {
    const auto line = CreateCopyLine();
    const auto paper = [&](const wchar_t* name) {
        REQUIRE_HR(Put(line, &ICopyLine::put_PaperSize, name), S_OK);
        return Value(line, &ICopyLine::get_DBPaperSize);
    };
    CHECK(paper(L"A4") == 1);
    CHECK(paper(L"iso a4") == 1);
    CHECK(paper(L"LETTER") == 2);
    CHECK(paper(L"no such paper") == 0);
    CHECK(paper(L"") == 0);

    const auto mask = [&](const wchar_t* words) {
        REQUIRE_HR(Put(line, &ICopyLine::put_Attributes, words), S_OK);
        return Value(line, &ICopyLine::get_DBAttributes);
    };
    CHECK(mask(L"Simplex,B&W") == 5);
    CHECK(mask(L"DUPLEX,color") == 10);
    CHECK(mask(L",,TonerSave,,unknown") == 16);
    CHECK(mask(L"unknown") == 0);
    CHECK(mask(L"Mono") == 0); // compared in lower case
    CHECK(mask(L"") == 0);
}

TEST_CASE("CopyLine_object_Xml_writes_the_children_in_their_order") {
    const auto line = CreateCopyLine();
    CHECK_TEXT(Text(line, &ICopyLine::get_Xml),
               L"<CopyLine><PaperSize/><PaperDimensions/><Attributes/><Sheets>0</Sheets><PagesBW>0</PagesBW>"
               L"<PagesColor>0</PagesColor><PagesBlank>0</PagesBlank></CopyLine>");
}

TEST_CASE("CopyLine_object_Xml_escapes_its_texts") {
    const auto line = CreateCopyLine();
    Put(line, &ICopyLine::put_PaperSize, L"A<4>");
    Put(line, &ICopyLine::put_PaperDimensions, L"2100,2970");
    Put(line, &ICopyLine::put_Attributes, L"Duplex,B&W");
    line->put_Sheets(1);
    line->put_PagesBW(2);
    line->put_PagesColor(3);
    line->put_PagesBlank(2147483647);
    const std::wstring xml = Text(line, &ICopyLine::get_Xml);
    CHECK_TEXT(xml, L"<CopyLine><PaperSize>A&lt;4&gt;</PaperSize>"
                    L"<PaperDimensions>2100,2970</PaperDimensions><Attributes>Duplex,B&amp;W</Attributes>"
                    L"<Sheets>1</Sheets><PagesBW>2</PagesBW><PagesColor>3</PagesColor>"
                    L"<PagesBlank>2147483647</PagesBlank></CopyLine>");
    CHECK_TEXT(Fields(CopyLineFrom(xml)), L"A<4>|2100,2970|Duplex,B&W|1|2|3|2147483647");
}

TEST_CASE("CopyLine_object_Xml_is_read_in_any_order") {
    CHECK_TEXT(Fields(CopyLineFrom(L"<CopyLine><PagesBlank>4</PagesBlank><PagesColor>3</PagesColor>"
                                   L"<PagesBW>2</PagesBW><Sheets>1</Sheets><Attributes>a</Attributes>"
                                   L"<PaperDimensions>1,2</PaperDimensions><PaperSize>A4</PaperSize>"
                                   L"</CopyLine>")),
               L"A4|1,2|a|1|2|3|4");
}

TEST_CASE("CopyLine_object_Xml_missing_elements_reset_their_fields") {
    const auto line =
        CopyLineFrom(L"<CopyLine><PaperSize>A4</PaperSize><PaperDimensions>1,2</PaperDimensions>"
                     L"<Attributes>a</Attributes><Sheets>1</Sheets><PagesBW>2</PagesBW>"
                     L"<PagesColor>3</PagesColor><PagesBlank>4</PagesBlank></CopyLine>");
    CHECK_TEXT(Fields(line), L"A4|1,2|a|1|2|3|4");
    CHECK_HR(Put(line, &ICopyLine::put_Xml, L"<CopyLine/>"), S_OK);
    CHECK_TEXT(Fields(line), L"|||0|0|0|0");
}

TEST_CASE("CopyLine_object_Xml_negative_and_unreadable_numbers_are_0") {
    CHECK_TEXT(Fields(CopyLineFrom(L"<CopyLine><Sheets>-1</Sheets><PagesBW>-2</PagesBW>"
                                   L"<PagesColor>-3</PagesColor><PagesBlank>-2147483648</PagesBlank>"
                                   L"</CopyLine>")),
               L"|||0|0|0|0");
    CHECK_TEXT(Fields(CopyLineFrom(L"<CopyLine><Sheets>many</Sheets><PagesBW></PagesBW>"
                                   L"<PagesColor>3x</PagesColor></CopyLine>")),
               L"|||0|0|3|0");
}

TEST_CASE("CopyLine_object_Xml_of_the_older_form_is_read") {
    const auto older = [](const wchar_t* attributes, const wchar_t* pages) {
        return Fields(CopyLineFrom(std::wstring(L"<CopyLine><Pages>") + pages + L"</Pages><PageAttributes>" +
                                   attributes +
                                   L"</PageAttributes><PaperSize>A4</PaperSize>"
                                   L"<Sheets>3</Sheets></CopyLine>"));
    };
    CHECK_TEXT(older(L"Duplex,B&amp;W", L"5"), L"A4||Duplex,|3|5|0|0");
    CHECK_TEXT(older(L"Color,Duplex", L"5"), L"A4||,Duplex|3|0|5|0");
    CHECK_TEXT(older(L"Duplex,Color,Draft", L"5"), L"A4||Duplex,Draft|3|0|5|0");
    CHECK_TEXT(older(L"ColorMatched", L"5"), L"A4||Matched|3|0|5|0");
    CHECK_TEXT(older(L"color", L"5"), L"A4||color|3|5|0|0");
    CHECK_TEXT(older(L"", L"-5"), L"A4|||3|0|0|0");
}

TEST_CASE("CopyLine_object_Xml_of_the_older_form_ignores_the_newer_counts") {
    CHECK_TEXT(Fields(CopyLineFrom(L"<CopyLine><PagesBW>1</PagesBW><PagesColor>2</PagesColor>"
                                   L"<PagesBlank>3</PagesBlank><Attributes>a</Attributes>"
                                   L"<Pages>5</Pages></CopyLine>")),
               L"|||0|5|0|0");
}

TEST_CASE("CopyLine_object_Xml_without_its_element_fails_with_the_layers_text") {
    const auto line = CopyLineFrom(L"<CopyLine><PaperSize>A4</PaperSize></CopyLine>");
    for (const wchar_t* xml : {L"", L"<x/>", L"<copyline/>", L"text", L"<CopyLine>", L"<CopyLine></x>"}) {
        INFO(Narrow(xml));
        CHECK_HR(Put(line, &ICopyLine::put_Xml, xml), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"[CCopyLineImpl::put_Xml] Invalid Xml fragment");
        CHECK_TEXT(Fields(line), L"A4|||0|0|0|0");
    }
    CHECK_HR(line->put_Xml(nullptr), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"[CCopyLineImpl::put_Xml] Invalid Xml fragment");
}

TEST_CASE("CopyLine_object_members_are_reached_by_name") {
    const auto line = CreateCopyLine();
    VARIANT value;
    VariantInit(&value);
    value.vt = VT_I4;
    value.lVal = -4;
    CHECK_HR(InvokeByName(line.Get(), L"Sheets", DISPATCH_PROPERTYPUT, {value}), S_OK);
    value.lVal = 9;
    CHECK_HR(InvokeByName(line.Get(), L"pagescolor", DISPATCH_PROPERTYPUT, {value}), S_OK);
    VARIANT result;
    VariantInit(&result);
    CHECK_HR(InvokeByName(line.Get(), L"Sheets", DISPATCH_PROPERTYGET, {}, &result), S_OK);
    CHECK(result.vt == VT_I4);
    CHECK(result.lVal == 0);
    CHECK_HR(InvokeByName(line.Get(), L"IsColor", DISPATCH_PROPERTYGET, {}, &result), S_OK);
    CHECK(result.vt == VT_BOOL);
    CHECK(result.boolVal == VARIANT_TRUE);
}
