#include "JobClient.h"

namespace {

constexpr HRESULT WrongLogTarget = static_cast<HRESULT>(0x800710DD);

ComPtr<IJobContents> ContentsOf(const ComPtr<IPrintJob>& job) {
    ComPtr<IJobContents> contents;
    REQUIRE_HR(job->get_JobContents(contents.Put()), S_OK);
    REQUIRE(contents);
    return contents;
}

VARIANT TextVariant(const UniqueBstr& text) {
    VARIANT variant;
    variant.vt = VT_BSTR;
    variant.bstrVal = text.Get();
    return variant;
}

/// Puts the text into the named property, or gets the property if the text is null, and expects the failure.
void CheckLateBoundFailure(const ComPtr<IPrintJob>& job, const wchar_t* name, const wchar_t* text,
                           HRESULT expected, const wchar_t* description) {
    INFO(Narrow(name));
    const UniqueBstr value(text ? text : L"");
    EXCEPINFO exception{};
    const HRESULT result =
        text ? InvokeByName(job.Get(), name, DISPATCH_PROPERTYPUT, {TextVariant(value)}, nullptr, &exception)
             : InvokeByName(job.Get(), name, DISPATCH_PROPERTYGET, {}, nullptr, &exception);
    REQUIRE_HR(result, DISP_E_EXCEPTION);
    CHECK_HR(exception.scode, expected);
    CHECK_TEXT(BstrView(exception.bstrDescription), description);
    SysFreeString(exception.bstrSource);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrHelpFile);
}

} // namespace

bool IsProxy(IUnknown* object) {
    // Proxies implement IMultiQI; the library's own objects do not.
    ComPtr<IMultiQI> several;
    return SUCCEEDED(object->QueryInterface(IID_IMultiQI, several.PutVoid()));
}

void CheckPropertiesAndXml(const ComPtr<IPrintJob>& job) {
    const std::wstring user = L"J\u00fcrgen \u2713 \U0001F5A8";
    CHECK_HR(Put(job, &IPrintJob::put_UserName, user), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_UserName), user);
    CHECK_HR(job->put_JobSize(-77), S_OK);
    CHECK(Value(job, &IPrintJob::get_JobSize) == -77);
    CHECK_HR(job->put_JobTimeUtc(40241.25), S_OK);
    CHECK(Value(job, &IPrintJob::get_JobTimeUtc) == 40241.25);
    CHECK_HR(job->put_VpnConnected(VARIANT_TRUE), S_OK);
    CHECK(Value(job, &IPrintJob::get_VpnConnected) == VARIANT_TRUE);

    CHECK_HR(Put(job, &IPrintJob::put_Xml, ReadTestFile("print_job_full.xml")), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_UserName), L"j.meyer");
    const std::wstring xml = Text(job, &IPrintJob::get_Xml);
    const auto reader = CreatePrintJob();
    CHECK_HR(Put(reader, &IPrintJob::put_Xml, xml), S_OK);
    CHECK_TEXT(Text(reader, &IPrintJob::get_JobName), L"Quarterly <draft> & notes.docx");
    CHECK_TEXT(Text(reader, &IPrintJob::get_Xml), xml);
}

void CheckLateBinding(const ComPtr<IPrintJob>& job) {
    const UniqueBstr name(L"late.docx");
    CHECK_HR(InvokeByName(job.Get(), L"JobName", DISPATCH_PROPERTYPUT, {TextVariant(name)}), S_OK);
    VARIANT result;
    VariantInit(&result);
    REQUIRE_HR(InvokeByName(job.Get(), L"JobName", DISPATCH_PROPERTYGET, {}, &result), S_OK);
    REQUIRE(result.vt == VT_BSTR);
    CHECK_TEXT(BstrView(result.bstrVal), L"late.docx");
    VariantClear(&result);
}

void CheckChildren(const ComPtr<IPrintJob>& job) {
    const auto contents = ContentsOf(job);
    const UniqueBstr words(L"A4,Duplex,B&W,PostScript");
    REQUIRE_HR(contents->GenerateContentsFromPageCounterInfo(words.Get(), 12, 2, 24, 12), S_OK);
    CHECK_TEXT(Text(contents, &IJobContents::get_DBCopyLines), L"1,24,0,12,6");
    CHECK(Value(ContentsOf(job), &IJobContents::get_TotalPages) == 24);

    ComPtr<ICopyLines> lines;
    REQUIRE_HR(contents->get_JobCopyLines(lines.Put()), S_OK);
    CHECK(Value(lines, &ICopyLines::get_Count) == 1);
    ComPtr<ICopyLine> line;
    REQUIRE_HR(lines->Item(0, line.Put()), S_OK);
    CHECK(Value(line, &ICopyLine::get_Sheets) == 12);
    CHECK_TEXT(Text(line, &ICopyLine::get_PaperSize), L"A4");
    CHECK_HR(lines->Item(1, line.Put()), E_INVALIDARG);
}

void CheckOwnChild(const ComPtr<IPrintJob>& job) {
    const auto info = CreateWindowsPrintInfo();
    REQUIRE_HR(info->put_JobInfoPages(4711), S_OK);
    REQUIRE_HR(job->put_WindowsPrintInfo(info.Get()), S_OK);
    CHECK(Text(job, &IPrintJob::get_Xml).find(L"<JobInfoPages>4711</JobInfoPages>") != std::wstring::npos);
    // The job must not keep a child whose apartment ends.
    REQUIRE_HR(job->put_WindowsPrintInfo(nullptr), S_OK);
    CHECK(Text(job, &IPrintJob::get_Xml).find(L"<WindowsPrintInfo") == std::wstring::npos);
}

void CheckOutParameters(const ComPtr<IPrintJob>& job) {
    const auto contents = ContentsOf(job);
    UniqueBstr paper, dimensions, pdl, finishing, page, unmatched;
    VARIANT_BOOL isColor = VARIANT_FALSE;
    const UniqueBstr words(L"A3,Color,Duplex,Hologram");
    REQUIRE_HR(contents->MatchAttributes(words.Get(), paper.Put(), dimensions.Put(), pdl.Put(),
                                         finishing.Put(), page.Put(), &isColor, unmatched.Put()),
               S_OK);
    CHECK_TEXT(paper.View(), L"A3");
    CHECK_TEXT(dimensions.View(), L"2970,4200");
    CHECK(isColor == VARIANT_TRUE);
    CHECK(page.View().find(L"Duplex") != std::wstring::npos);
    CHECK_TEXT(unmatched.View(), L"Hologram");
    VARIANT_BOOL matches = VARIANT_TRUE;
    REQUIRE_HR(contents->DoAttributesMatch(words.Get(), unmatched.Put(), &matches), S_OK);
    CHECK(matches == VARIANT_FALSE);
}

void CheckErrors(const ComPtr<IPrintJob>& job) {
    CHECK_HR(Put(job, &IPrintJob::put_Xml, L"<x/>"), E_FAIL);
    REQUIRE_HR(job->ResetLogTarget(), S_OK);
    UniqueBstr address;
    CHECK_HR(job->get_DeviceAddress(address.Put()), WrongLogTarget);
    CHECK_HR(job->put_JobContents(nullptr), E_POINTER);

    CheckLateBoundFailure(job, L"DeviceAddress", nullptr, WrongLogTarget,
                          L"The DeviceAddress property is not supported when the LogTargetType is None.");
    CheckLateBoundFailure(job, L"Xml", L"<x/>", E_FAIL, L"PrintJob element is missing.");
}

void CheckPrintJob(const ComPtr<IPrintJob>& job) {
    CheckPropertiesAndXml(job);
    CheckLateBinding(job);
    CheckChildren(job);
    CheckOwnChild(job);
    CheckOutParameters(job);
    CheckErrors(job);
}
