#pragma once

#include "Records.h"

#include "common/QxDateTime.h"
#include "common/text/Numbers.h"
#include "common/xml/XmlNamespace.h"

// The XML form of a print job with all its children, shared by all contenders. Each contender provides
//
// a node to read from: Text, Number and Flag of a named child; its own Data and Attribute; Within(name, use)
// and ForEach(name, use), which call use with the node of one child, or of each;
//
// a sink to write to: Open, Attribute, Data, Close and CloseEmpty; Element for a text, a number or a flag.

namespace RecordForm {

inline std::int32_t Milliseconds(std::wstring_view time) noexcept {
    const std::size_t dot = time.find(L'.');
    return dot == std::wstring_view::npos ? 0 : QxMisc::ParseInt32(time.substr(dot + 1, 3));
}

template<class Node>
ContentsValues ReadContents(Node& node) {
    ContentsValues values;
    values.version = node.Attribute(L"Version");
    node.Within(L"JobCopyLines", [&](auto& lines) {
        lines.ForEach(L"CopyLine", [&](auto& line) {
            values.lines.push_back({line.Text(L"PaperSize"), line.Text(L"PaperDimensions"),
                                    line.Text(L"Attributes"), line.Number(L"Sheets"), line.Number(L"PagesBW"),
                                    line.Number(L"PagesColor"), line.Number(L"PagesBlank")});
        });
    });
    values.originals = node.Number(L"JobOriginals");
    values.copies = node.Number(L"JobCopies");
    values.pdl = node.Text(L"JobPdl");
    values.finishing = node.Text(L"JobFinishing");
    return values;
}

template<class Node>
PrintInfoValues ReadPrintInfo(Node& node) {
    return {node.Number(L"JobInfoPages"),
            node.Number(L"JobInfoOriginals"),
            node.Number(L"DevModeFields"),
            node.Number(L"DevModeOrientation"),
            node.Number(L"DevModePaperSize"),
            node.Number(L"DevModePaperLength"),
            node.Number(L"DevModePaperWidth"),
            node.Number(L"DevModeScale"),
            node.Number(L"DevModeCopies"),
            node.Number(L"DevModeDefaultSource"),
            node.Number(L"DevModePrintQuality"),
            node.Number(L"DevModeColor"),
            node.Number(L"DevModeDuplex"),
            node.Number(L"DevModeTumble"),
            node.Number(L"DevModeXResolution"),
            node.Number(L"DevModeYResolution"),
            node.Number(L"DevModeTtOption"),
            node.Number(L"DevModeCollate"),
            node.Text(L"DevModeFormName"),
            node.Number(L"DevModeMediaType"),
            node.Number(L"AttributeInfoPagesPerSide"),
            node.Number(L"AttributeInfoPageOrderFlags")};
}

template<class Node>
PolicyValues ReadPolicy(Node& node) {
    PolicyValues values;
    values.version = node.Attribute(L"Version");
    values.id = node.Number(L"PolicyId");
    values.name = node.Text(L"PolicyName");
    values.cancelled = node.Flag(L"Cancelled");
    node.Within(L"RuleViolations", [&](auto& rules) {
        rules.ForEach(L"Rule", [&](auto& rule) {
            values.violations.emplace_back(QxMisc::ParseInt32(rule.Attribute(L"TriggerId")),
                                           rule.Attribute(L"Action"));
        });
    });
    return values;
}

template<class Node>
void ReadOwnValues(Node& node, JobValues& values) {
    values.version = node.Attribute(L"Version");
    values.guid = node.Text(L"JobGuid");
    values.customerCode = node.Text(L"CustomerCode");
    values.userName = node.Text(L"UserName");
    values.userDomain = node.Text(L"UserDomainName");
    values.fromSystemUser = node.Flag(L"FromSystemUser");
    values.desktopUser = node.Text(L"DesktopUserName");
    values.desktopDomain = node.Text(L"DesktopUserDomainName");
    const QxString local = node.Text(L"JobTimeLocal");
    values.timeLocal = QxDateTime::Parse(local).Value();
    values.timeLocalMsec = Milliseconds(local);
    values.timeUtc = QxDateTime::Parse(node.Text(L"JobTimeUtc")).Value();
    values.size = node.Number(L"JobSize");
    values.name = node.Text(L"JobName");
    values.fileName = node.Text(L"JobFileName");
    values.dataType = node.Text(L"JobDataType");
    node.Within(L"LogTarget", [&](auto& target) {
        values.logTargetType = target.Attribute(L"Type");
        values.logTarget = target.Data();
    });
    values.machineName = node.Text(L"MachineName");
    values.applicationName = node.Text(L"ApplicationName");
    values.applicationDescription = node.Text(L"ApplicationDescription");
    values.vpnConnected = node.Flag(L"VpnConnected");
    node.Within(L"Toner", [&](auto& toner) {
        values.tonerCoverage = toner.Number(L"Coverage");
        values.tonerSaving = toner.Number(L"Saving");
    });
    values.dataSource = node.Number(L"DataSource");
    values.contentsSource = node.Number(L"JobContentsSource");
    values.discardCount = node.Number(L"JobContentsDiscardCount");
}

template<class Node>
JobValues ReadJob(Node& node) {
    JobValues values;
    ReadOwnValues(node, values);
    node.Within(L"JobContents", [&](auto& contents) { values.contents = ReadContents(contents); });
    node.Within(L"PageCounterInfo", [&](auto& info) {
        info.Within(L"JobContents",
                    [&](auto& contents) { values.pageCounterContents = ReadContents(contents); });
        values.pageCounterError = info.Text(L"PageCounterErrorMessage");
        values.pageCounterResult = info.Text(L"PageCounterResult");
    });
    node.Within(L"WindowsPrintInfo", [&](auto& info) { values.printInfo = ReadPrintInfo(info); });
    node.Within(L"PolicyResults", [&](auto& policy) { values.policy = ReadPolicy(policy); });
    return values;
}

template<class Sink>
void WriteLine(Sink& sink, const CopyLineValues& line) {
    sink.Open(L"CopyLine");
    sink.Element(L"PaperSize", line.paperSize);
    sink.Element(L"PaperDimensions", line.paperDimensions);
    sink.Element(L"Attributes", line.attributes);
    sink.Element(L"Sheets", line.sheets);
    sink.Element(L"PagesBW", line.pagesBW);
    sink.Element(L"PagesColor", line.pagesColor);
    sink.Element(L"PagesBlank", line.pagesBlank);
    sink.Close(L"CopyLine");
}

template<class Sink>
void WriteContents(Sink& sink, const ContentsValues& values) {
    sink.Open(L"JobContents");
    sink.Attribute(L"xmlns", QX_XML_NAMESPACE_BASE L"/OutputManagement/JobContents");
    sink.Attribute(L"Version", values.version);
    sink.Open(L"JobCopyLines");
    for (const CopyLineValues& line : values.lines)
        WriteLine(sink, line);
    sink.Close(L"JobCopyLines");
    sink.Element(L"JobOriginals", values.originals);
    sink.Element(L"JobCopies", values.copies);
    sink.Element(L"JobPdl", values.pdl);
    sink.Element(L"JobFinishing", values.finishing);
    sink.Close(L"JobContents");
}

template<class Sink>
void WritePrintInfo(Sink& sink, const PrintInfoValues& values) {
    sink.Open(L"WindowsPrintInfo");
    sink.Element(L"JobInfoPages", values.pages);
    sink.Element(L"JobInfoOriginals", values.originals);
    sink.Element(L"DevModeFields", values.fields);
    sink.Element(L"DevModeOrientation", values.orientation);
    sink.Element(L"DevModePaperSize", values.paperSize);
    sink.Element(L"DevModePaperLength", values.paperLength);
    sink.Element(L"DevModePaperWidth", values.paperWidth);
    sink.Element(L"DevModeScale", values.scale);
    sink.Element(L"DevModeCopies", values.copies);
    sink.Element(L"DevModeDefaultSource", values.defaultSource);
    sink.Element(L"DevModePrintQuality", values.printQuality);
    sink.Element(L"DevModeColor", values.color);
    sink.Element(L"DevModeDuplex", values.duplex);
    sink.Element(L"DevModeTumble", values.tumble);
    sink.Element(L"DevModeXResolution", values.xResolution);
    sink.Element(L"DevModeYResolution", values.yResolution);
    sink.Element(L"DevModeTtOption", values.ttOption);
    sink.Element(L"DevModeCollate", values.collate);
    sink.Element(L"DevModeFormName", values.formName);
    sink.Element(L"DevModeMediaType", values.mediaType);
    sink.Element(L"AttributeInfoPagesPerSide", values.pagesPerSide);
    sink.Element(L"AttributeInfoPageOrderFlags", values.pageOrderFlags);
    sink.Close(L"WindowsPrintInfo");
}

template<class Sink>
void WritePolicy(Sink& sink, const PolicyValues& values) {
    sink.Open(L"PolicyResults");
    sink.Attribute(L"xmlns", QX_XML_NAMESPACE_BASE L"/OutputManagement/Policy");
    sink.Attribute(L"Version", values.version);
    sink.Element(L"PolicyId", values.id);
    sink.Element(L"PolicyName", values.name);
    if (values.cancelled)
        sink.Element(L"Cancelled", true);
    sink.Open(L"RuleViolations");
    for (const auto& [trigger, action] : values.violations) {
        sink.Open(L"Rule");
        sink.Attribute(L"TriggerId", QxMisc::FormatInt32(trigger));
        sink.Attribute(L"Action", action);
        sink.CloseEmpty();
    }
    sink.Close(L"RuleViolations");
    sink.Close(L"PolicyResults");
}

template<class Sink>
void WriteOwnValues(Sink& sink, const JobValues& values) {
    sink.Element(L"JobGuid", values.guid);
    sink.Element(L"CustomerCode", values.customerCode);
    sink.Element(L"UserName", values.userName);
    sink.Element(L"UserDomainName", values.userDomain);
    sink.Element(L"FromSystemUser", values.fromSystemUser);
    sink.Element(L"DesktopUserName", values.desktopUser);
    sink.Element(L"DesktopUserDomainName", values.desktopDomain);
    sink.Element(L"JobTimeLocal", QxDateTime(values.timeLocal), values.timeLocalMsec);
    sink.Element(L"JobTimeUtc", QxDateTime(values.timeUtc), 0);
    sink.Element(L"JobSize", values.size);
    sink.Element(L"JobName", values.name);
    sink.Element(L"JobFileName", values.fileName);
    sink.Element(L"JobDataType", values.dataType);
    sink.Open(L"LogTarget");
    sink.Attribute(L"Type", values.logTargetType);
    sink.Data(values.logTarget);
    sink.Close(L"LogTarget");
    sink.Element(L"MachineName", values.machineName);
    sink.Element(L"ApplicationName", values.applicationName);
    sink.Element(L"ApplicationDescription", values.applicationDescription);
    sink.Element(L"VpnConnected", values.vpnConnected);
    sink.Open(L"Toner");
    sink.Element(L"Coverage", values.tonerCoverage);
    sink.Element(L"Saving", values.tonerSaving);
    sink.Close(L"Toner");
    sink.Element(L"DataSource", values.dataSource);
    sink.Element(L"FromSystemUser", values.fromSystemUser);
    sink.Element(L"JobContentsSource", values.contentsSource);
    sink.Element(L"JobContentsDiscardCount", values.discardCount);
}

template<class Sink>
void WriteJob(Sink& sink, const JobValues& values) {
    sink.Open(L"PrintJob");
    sink.Attribute(L"xmlns", QX_XML_NAMESPACE_BASE L"/OutputManagement/PrintJob");
    sink.Attribute(L"Version", values.version);
    WriteOwnValues(sink, values);
    WriteContents(sink, values.contents);
    sink.Open(L"PageCounterInfo");
    WriteContents(sink, values.pageCounterContents);
    sink.Element(L"PageCounterErrorMessage", values.pageCounterError);
    sink.Element(L"PageCounterResult", values.pageCounterResult);
    sink.Close(L"PageCounterInfo");
    WritePrintInfo(sink, values.printInfo);
    WritePolicy(sink, values.policy);
    sink.Close(L"PrintJob");
}

} // namespace RecordForm
