#include "tests/support/ConformanceTables.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>

namespace {

const std::map<std::string, Default> Defaults = {
    {"IPrintJob.Xml", {Default::BeginsWith, "<PrintJob xmlns="}},
    {"IPrintJob.JobTimeLocal", {Default::LocalTime, ""}},
    {"IPrintJob.JobTimeUtc", {Default::UniversalTime, ""}},
    {"IPrintJob.JobContents", {Default::Exactly, "object"}},
    {"IPrintJob.PageCounterInfoXml", {Default::BeginsWith, "<PageCounterInfo>"}},
    {"IPrintJob.LogicalPrinterGuid", {Default::Refused, ""}},
    {"IPrintJob.DeviceId", {Default::Refused, ""}},
    {"IPrintJob.DeviceAddress", {Default::Refused, ""}},
    {"IPrintJob.TonerCoverage", {Default::Exactly, "-1"}},
    {"IPrintJob.TonerSaving", {Default::Exactly, "-1"}},
    {"IPrintJob.Version", {Default::Exactly, "\"7.26\""}},
    {"IJobContents.Xml", {Default::BeginsWith, "<JobContents xmlns="}},
    {"IJobContents.JobCopyLines", {Default::Exactly, "object"}},
    {"IJobContents.DBPdl", {Default::Exactly, "1"}}, // the default language of the catalogue in use
    {"IJobContents.GenerateDefaultPageAttributes", {Default::Exactly, "true"}},
    {"IJobContents.Version", {Default::Exactly, "\"4.0\""}},
    {"ICopyLines.Xml", {Default::Exactly, "\"<JobCopyLines></JobCopyLines>\""}},
    {"ICopyLine.Xml", {Default::BeginsWith, "<CopyLine>"}},
    {"IWindowsPrintInfo.Xml", {Default::BeginsWith, "<WindowsPrintInfo>"}},
    {"IWindowsPrintInfo.AttributeInfoPagesPerSide", {Default::Exactly, "1"}},
    {"IWindowsPrintInfo.JobInfoCopies", {Default::Exactly, "1"}},
    {"IPolicyResults.Xml", {Default::BeginsWith, "<PolicyResults xmlns="}},
    {"IPolicyResults.Version", {Default::Exactly, "\"4.0\""}},
    {"IPolicyResults.HasRules", {Default::Exactly, "true"}},
    {"ICopyJob.Xml", {Default::BeginsWith, "<CopyJob xmlns="}},
    {"ICopyJob.JobTimeLocal", {Default::LocalTime, ""}},
    {"ICopyJob.JobContents", {Default::Exactly, "object"}},
    {"ICopyJob.Version", {Default::Exactly, "\"4.0\""}},
    {"IScanJob.Xml", {Default::BeginsWith, "<ScanJob xmlns="}},
    {"IScanJob.JobTimeLocal", {Default::LocalTime, ""}},
    {"IScanJob.JobContents", {Default::Exactly, "object"}},
    {"IScanJob.Version", {Default::Exactly, "\"4.0\""}},
    {"IFaxJob.Xml", {Default::BeginsWith, "<FaxJob xmlns="}},
    {"IFaxJob.JobTimeLocal", {Default::LocalTime, ""}},
    {"IFaxJob.JobContents", {Default::Exactly, "object"}},
    {"IFaxJob.Version", {Default::Exactly, "\"4.2\""}},
    {"ILogicalPrinter.Xml", {Default::BeginsWith, "<LogicalPrinter xmlns="}},
    {"ILogicalPrinter.DriverInfoXml", {Default::BeginsWith, "<DriverInfo>"}},
    {"ILogicalPrinter.Version", {Default::Exactly, "\"7.0\""}},
};

/// Properties that raise lower numbers to a minimum.
const std::map<std::string, LONG> Minimums = {
    {"ICopyLine.Sheets", 0},
    {"ICopyLine.PagesBW", 0},
    {"ICopyLine.PagesColor", 0},
    {"ICopyLine.PagesBlank", 0},
    {"IJobContents.JobOriginals", 0},
    {"IJobContents.JobCopies", 0},
    {"IWindowsPrintInfo.JobInfoPages", 0},
    {"IWindowsPrintInfo.JobInfoOriginals", 0},
    {"IWindowsPrintInfo.DevModeFields", 0},
    {"IWindowsPrintInfo.AttributeInfoPagesPerSide", 1},
};

const std::wstring Markup = L"<a b=\"c\">&amp;'\x00FC</a>";

std::string ZeroOf(VARTYPE type) {
    switch (type) {
    case VT_I4:
        return "0";
    case VT_BOOL:
        return "false";
    case VT_DATE:
        return "date 0";
    case VT_BSTR:
        return "\"\"";
    default:
        return "no object";
    }
}

std::vector<Variant> Texts() {
    std::vector<Variant> values;
    values.push_back(Variant::Text(Markup));
    values.push_back(Variant::NullText());
    values.push_back(Variant::Text(L"plain"));
    values.push_back(Variant::Text(L""));
    values.push_back(Variant::Text(L"<&>\"'\t\r\n]]>"));
    values.push_back(Variant::Text(L"\xD834\xDD1E"));
    values.push_back(Variant::Text(std::wstring_view(L"before\0after", 12)));
    values.push_back(Variant::Text(std::wstring(512 * 1024, L'x'))); // a megabyte
    return values;
}

} // namespace

Default DefaultOf(const std::string& member, VARTYPE type) {
    const auto found = Defaults.find(member);
    return found != Defaults.end() ? found->second : Default{Default::Exactly, ZeroOf(type)};
}

std::vector<Variant> RangeOf(VARTYPE type) {
    std::vector<Variant> values;
    if (type == VT_BSTR)
        return Texts();
    if (type == VT_I4)
        // A number that may be too low follows a higher one: it must be raised, not ignored.
        for (const LONG number : {LONG{1}, LONG{-1}, std::numeric_limits<LONG>::max(),
                                  std::numeric_limits<LONG>::min(), LONG{17}, LONG{0}})
            values.push_back(Variant::Number(number));
    if (type == VT_DATE)
        for (const DATE date : {1.5, 0.0, -1.25, -657434.0, 2958465.99, 1e300})
            values.push_back(Variant::Date(date));
    if (type == VT_BOOL)
        for (const int flag : {-1, 0, 1, 0, 2, 0, 256, 0, -32768})
            values.push_back(Variant::Flag(static_cast<VARIANT_BOOL>(flag)));
    return values;
}

std::string Stored(const std::string& member, const VARIANT& put) {
    if (put.vt == VT_BOOL)
        return put.boolVal ? "true" : "false";
    if (put.vt == VT_BSTR && !put.bstrVal)
        return "\"\"";
    const auto minimum = Minimums.find(member);
    if (minimum != Minimums.end())
        return std::to_string(std::max(put.lVal, minimum->second));
    return Show(put);
}

bool IsAccepted(const std::string& member, const VARIANT& put) {
    if (member != "ILogicalPrinter.Destination")
        return true;
    const std::wstring_view text = BstrView(put.bstrVal);
    return text.empty() || text == Markup;
}

bool IsRequiredChild(const std::string& member) {
    return member.size() > 12 && member.compare(member.size() - 12, 12, ".JobContents") == 0;
}

HRESULT MethodResult(const std::string& member) {
    return member == "ICopyLines.Item" ? E_INVALIDARG : S_OK; // a new collection has no item
}
