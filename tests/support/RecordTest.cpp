#include "tests/support/RecordTest.h"

#include <cmath>
#include <cwchar>

std::wstring RecordText(std::wstring_view root, std::wstring_view version, std::wstring_view elements) {
    std::wstring text = L"<";
    text.append(root).append(L" Version=\"").append(version).append(L"\">");
    return text.append(elements).append(L"</").append(root).append(L">");
}

ComPtr<IPrintJob> PrintJobFrom(std::wstring_view xml) {
    auto job = CreatePrintJob();
    INFO(Narrow(xml));
    REQUIRE_HR(Put(job, &IPrintJob::put_Xml, xml), S_OK);
    return job;
}

ComPtr<IPrintJob> PrintJobOfVersion(std::wstring_view version, std::wstring_view elements) {
    return PrintJobFrom(RecordText(L"PrintJob", version, elements));
}

DATE MakeDate(WORD year, WORD month, WORD day, WORD hour, WORD minute, WORD second) {
    SYSTEMTIME fields{year, month, 0, day, hour, minute, second, 0};
    DATE date = 0;
    REQUIRE(SystemTimeToVariantTime(&fields, &date));
    return date;
}

std::wstring DateText(DATE date) {
    SYSTEMTIME fields{};
    REQUIRE(VariantTimeToSystemTime(date, &fields));
    wchar_t text[64];
    std::swprintf(text, 64, L"%04d-%02d-%02dT%02d:%02d:%02d", fields.wYear, fields.wMonth, fields.wDay,
                  fields.wHour, fields.wMinute, fields.wSecond);
    return text;
}

namespace {
bool IsClose(DATE date, SYSTEMTIME& now) {
    constexpr double tenSeconds = 10.0 / 86400;
    DATE clock = 0;
    return SystemTimeToVariantTime(&now, &clock) && std::fabs(date - clock) < tenSeconds;
}
} // namespace

bool IsLocalNow(DATE date) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return IsClose(date, now);
}

bool IsUtcNow(DATE date) {
    SYSTEMTIME now;
    GetSystemTime(&now);
    return IsClose(date, now);
}

int Occurrences(std::wstring_view text, std::wstring_view piece) {
    int count = 0;
    for (auto at = text.find(piece); at != std::wstring_view::npos; at = text.find(piece, at + 1))
        ++count;
    return count;
}
