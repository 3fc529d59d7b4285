#include "tests/support/RecordTest.h"

namespace {

ComPtr<ICopyLines> CopyLinesFrom(std::wstring_view lines) {
    auto collection = CreateCopyLines();
    REQUIRE_HR(
        Put(collection, &ICopyLines::put_Xml, L"<JobCopyLines>" + std::wstring(lines) + L"</JobCopyLines>"),
        S_OK);
    return collection;
}

/// A copy line element whose dimensions are "d" plus the paper's name.
std::wstring Line(const std::wstring& paper, const std::wstring& attributes, int sheets, int pagesBW,
                  int pagesColor, int pagesBlank) {
    return L"<CopyLine><PaperSize>" + paper + L"</PaperSize><PaperDimensions>d" + paper +
           L"</PaperDimensions><Attributes>" + attributes + L"</Attributes><Sheets>" +
           std::to_wstring(sheets) + L"</Sheets><PagesBW>" + std::to_wstring(pagesBW) +
           L"</PagesBW><PagesColor>" + std::to_wstring(pagesColor) + L"</PagesColor><PagesBlank>" +
           std::to_wstring(pagesBlank) + L"</PagesBlank></CopyLine>";
}

ComPtr<ICopyLine> Item(const ComPtr<ICopyLines>& lines, LONG index) {
    ComPtr<ICopyLine> line;
    REQUIRE_HR(lines->Item(index, line.Put()), S_OK);
    REQUIRE(line);
    return line;
}

} // namespace

TEST_CASE("CopyLines_object_Item_refuses_a_null_pointer_with_any_index") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"", 1, 1, 0, 0));
    CHECK_HR(lines->Item(0, nullptr), E_POINTER);
    CHECK_HR(lines->Item(-1, nullptr), E_POINTER);
    CHECK_TEXT(TakeErrorDescription(), L"<none>");
}

TEST_CASE("CopyLines_object_totals_sum_over_the_lines") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"Simplex", 10, 1, 2, 3) + Line(L"A3", L"", 20, 4, 5, 6));
    CHECK(Value(lines, &ICopyLines::get_Count) == 2);
    CHECK(Value(lines, &ICopyLines::get_TotalPages) == 21);
    CHECK(Value(lines, &ICopyLines::get_TotalPagesBW) == 5);
    CHECK(Value(lines, &ICopyLines::get_TotalPagesColor) == 7);
    CHECK(Value(lines, &ICopyLines::get_ContainsDuplex) == VARIANT_FALSE);
}

TEST_CASE("CopyLines_object_contains_duplex_as_soon_as_one_line_does") {
    CHECK(Value(CopyLinesFrom(Line(L"A3", L"", 1, 1, 0, 0) + Line(L"A4", L"Color,Duplex", 1, 1, 0, 0)),
                &ICopyLines::get_ContainsDuplex) == VARIANT_TRUE);
    CHECK(Value(CopyLinesFrom(Line(L"A4", L"NoDuplex", 1, 1, 0, 0)), &ICopyLines::get_ContainsDuplex) ==
          VARIANT_TRUE);
    CHECK(Value(CopyLinesFrom(Line(L"A4", L"duplex", 1, 1, 0, 0)), &ICopyLines::get_ContainsDuplex) ==
          VARIANT_FALSE);
}

TEST_CASE("CopyLines_object_Item_returns_the_lines_in_order") {
    const auto lines =
        CopyLinesFrom(Line(L"Letter", L"Duplex,B&amp;W", 1, 2, 3, 4) + Line(L"A4", L"Color", 5, 6, 7, 8));
    const std::wstring expected[] = {Line(L"A4", L"Color", 5, 6, 7, 8),
                                     Line(L"Letter", L"Duplex,B&amp;W", 1, 2, 3, 4)};
    CHECK_TEXT(Text(Item(lines, 0), &ICopyLine::get_Xml), expected[0]);
    CHECK_TEXT(Text(Item(lines, 1), &ICopyLine::get_Xml), expected[1]);
    CHECK_TEXT(Text(lines, &ICopyLines::get_Xml),
               L"<JobCopyLines>" + expected[0] + expected[1] + L"</JobCopyLines>");
}

TEST_CASE("CopyLines_object_Item_out_of_range_is_an_invalid_argument") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"", 1, 1, 0, 0) + Line(L"A3", L"", 1, 1, 0, 0));
    for (const LONG index : {2L, 3L, -1L, LONG_MAX, LONG_MIN}) {
        INFO(index);
        auto* garbage = reinterpret_cast<ICopyLine*>(0x1234);
        CHECK_HR(lines->Item(index, &garbage), E_INVALIDARG);
        CHECK(garbage == nullptr);
        CHECK_TEXT(TakeErrorDescription(), L"<none>");
    }
    auto* garbage = reinterpret_cast<ICopyLine*>(0x1234);
    CHECK_HR(CreateCopyLines()->Item(0, &garbage), E_INVALIDARG);
    CHECK(garbage == nullptr);
}

TEST_CASE("CopyLines_object_Item_is_a_copy") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"Duplex", 1, 2, 3, 4));
    const auto first = Item(lines, 0);
    CHECK(first.Get() != Item(lines, 0).Get());
    CHECK_HR(Put(first, &ICopyLine::put_PaperSize, L"Letter"), S_OK);
    CHECK_HR(first->put_PagesBW(99), S_OK);
    CHECK_TEXT(Text(Item(lines, 0), &ICopyLine::get_Xml), Line(L"A4", L"Duplex", 1, 2, 3, 4));
    CHECK(Value(lines, &ICopyLines::get_TotalPages) == 9);
}

TEST_CASE("CopyLines_object_Item_outlives_its_collection") {
    auto lines = CopyLinesFrom(Line(L"A4", L"Duplex", 1, 2, 3, 4));
    const auto line = Item(lines, 0);
    CHECK_HR(lines->Clear(), S_OK);
    lines = {};
    CHECK_TEXT(Text(line, &ICopyLine::get_Xml), Line(L"A4", L"Duplex", 1, 2, 3, 4));
}

TEST_CASE("CopyLines_object_Clear_removes_all_lines") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"Duplex", 1, 1, 1, 1) + Line(L"A3", L"", 1, 1, 1, 1));
    CHECK_HR(lines->Clear(), S_OK);
    CHECK(Value(lines, &ICopyLines::get_Count) == 0);
    CHECK(Value(lines, &ICopyLines::get_TotalPages) == 0);
    CHECK_TEXT(Text(lines, &ICopyLines::get_Xml), L"<JobCopyLines></JobCopyLines>");
    CHECK_HR(lines->Clear(), S_OK);
    ComPtr<ICopyLine> line;
    CHECK_HR(lines->Item(0, line.Put()), E_INVALIDARG);
}

TEST_CASE("CopyLines_object_Xml_merges_lines_of_one_paper_size") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"Duplex,Color", 1, 2, 3, 4) +
                                     L"<CopyLine><PaperSize>A4</PaperSize><PaperDimensions>other"
                                     L"</PaperDimensions><Attributes>Simplex</Attributes><Sheets>10</Sheets>"
                                     L"<PagesBW>20</PagesBW><PagesColor>30</PagesColor>"
                                     L"<PagesBlank>40</PagesBlank></CopyLine>");
    CHECK_TEXT(Text(lines, &ICopyLines::get_Xml),
               L"<JobCopyLines>" + Line(L"A4", L"Duplex,Color", 11, 22, 33, 44) + L"</JobCopyLines>");
}

TEST_CASE("CopyLines_object_Xml_orders_lines_by_paper_size") {
    CHECK_TEXT(Text(CopyLinesFrom(Line(L"Letter", L"first", 1, 1, 0, 0) + Line(L"A4", L"Duplex", 2, 2, 0, 0) +
                                  Line(L"Letter", L"second", 3, 3, 0, 0)),
                    &ICopyLines::get_Xml),
               L"<JobCopyLines>" + Line(L"A4", L"Duplex", 2, 2, 0, 0) +
                   Line(L"Letter", L"first", 4, 4, 0, 0) + L"</JobCopyLines>");
}

TEST_CASE("CopyLines_object_Xml_compares_paper_sizes_by_code_units") {
    const auto lines = CopyLinesFrom(Line(L"a4", L"x", 1, 1, 0, 0) + Line(L"\u00c44", L"x", 2, 1, 0, 0) +
                                     Line(L"A4", L"x", 3, 1, 0, 0) + Line(L"A3 plus", L"x", 4, 1, 0, 0) +
                                     Line(L"A3", L"x", 5, 1, 0, 0));
    REQUIRE(Value(lines, &ICopyLines::get_Count) == 5);
    const wchar_t* expected[] = {L"A3", L"A3 plus", L"A4", L"a4", L"\u00c44"};
    for (LONG i = 0; i < 5; ++i)
        CHECK_TEXT(Text(Item(lines, i), &ICopyLine::get_PaperSize), expected[i]);
}

TEST_CASE("CopyLines_object_Xml_sum_beyond_the_number_range_is_0") {
    const auto lines =
        CopyLinesFrom(Line(L"A4", L"", 2147483647, 2147483647, 1, 0) + Line(L"A4", L"", 1, 1, 1, 0));
    const auto line = Item(lines, 0);
    CHECK(Value(line, &ICopyLine::get_Sheets) == 0);
    CHECK(Value(line, &ICopyLine::get_PagesBW) == 0);
    CHECK(Value(line, &ICopyLine::get_PagesColor) == 2);
}

TEST_CASE("CopyLines_object_Xml_reads_older_and_newer_lines_side_by_side") {
    const auto lines = CopyLinesFrom(L"<CopyLine><PaperSize>A4</PaperSize><Pages>5</Pages>"
                                     L"<PageAttributes>Color,Duplex</PageAttributes></CopyLine><Other/>" +
                                     Line(L"A3", L"Duplex", 1, 2, 3, 4));
    REQUIRE(Value(lines, &ICopyLines::get_Count) == 2);
    CHECK_TEXT(Text(Item(lines, 1), &ICopyLine::get_Attributes), L",Duplex");
    CHECK(Value(Item(lines, 1), &ICopyLine::get_PagesColor) == 5);
}

TEST_CASE("CopyLines_object_Xml_replaces_the_lines") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"", 1, 1, 0, 0));
    CHECK_HR(Put(lines, &ICopyLines::put_Xml, L"<JobCopyLines/>"), S_OK);
    CHECK(Value(lines, &ICopyLines::get_Count) == 0);
}

TEST_CASE("CopyLines_object_Xml_without_its_element_fails_and_empties_the_lines") {
    for (const wchar_t* xml : {L"", L"<x/>", L"<CopyLine/>", L"<JobCopyLines>"}) {
        INFO(Narrow(xml));
        const auto lines = CopyLinesFrom(Line(L"A4", L"", 1, 1, 0, 0));
        CHECK_HR(Put(lines, &ICopyLines::put_Xml, xml), E_FAIL);
        CHECK_TEXT(TakeErrorDescription(), L"[CCopyLinesImpl::put_Xml] Invalid Xml fragment");
        CHECK(Value(lines, &ICopyLines::get_Count) == 0);
    }
    const auto lines = CreateCopyLines();
    CHECK_HR(lines->put_Xml(nullptr), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"[CCopyLinesImpl::put_Xml] Invalid Xml fragment");
}

TEST_CASE("CopyLines_object_Item_is_reached_by_name") {
    const auto lines = CopyLinesFrom(Line(L"A4", L"Duplex", 1, 2, 3, 4));
    VARIANT index, result;
    VariantInit(&index);
    VariantInit(&result);
    index.vt = VT_I4;
    index.lVal = 0;
    CHECK_HR(InvokeByName(lines.Get(), L"Item", DISPATCH_METHOD, {index}, &result), S_OK);
    REQUIRE(result.vt == VT_DISPATCH);
    ComPtr<ICopyLine> line;
    CHECK_HR(result.pdispVal->QueryInterface(__uuidof(ICopyLine), line.PutVoid()), S_OK);
    VariantClear(&result);
    CHECK_TEXT(Text(line, &ICopyLine::get_PaperSize), L"A4");
    index.lVal = 1;
    CHECK_HR(InvokeByName(lines.Get(), L"Item", DISPATCH_METHOD, {index}, &result), DISP_E_EXCEPTION);
}
