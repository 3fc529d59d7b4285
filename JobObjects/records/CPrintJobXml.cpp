// The versioned XML form of a print job. A version decides which elements are written and which are looked
// for; the two directions stand side by side, group by group.

#include "CPrintJobImpl.h"

#include "JobObjects/frame/ChildRecord.h"
#include "LogTargetTypes.h"
#include "common/Clock.h"
#include "common/QxMisc.h"
#include "common/XmlNamespace.h"

namespace {

constexpr QxVersion assumedVersion(3, 0); // of a document that tells none
constexpr QxVersion lowestVersion(3, 5);
constexpr QxVersion policyResultsVersion(4, 0);
constexpr QxVersion tonerVersion(4, 3);
constexpr QxVersion dataSourceVersion(5, 1); // also ApplicationDescription
constexpr QxVersion userDomainVersion(6, 0);
constexpr QxVersion systemUserVersion(7, 4);
constexpr QxVersion desktopUserVersion(7, 26);

/// The three digits behind the first ".", 0 if there are fewer.
std::int32_t Milliseconds(std::wstring_view text) noexcept {
    const std::size_t dot = text.find(L'.');
    return dot != std::wstring_view::npos && dot + 4 <= text.size()
               ? QxMisc::ParseInt32(text.substr(dot + 1, 3))
               : 0;
}

/// Reads an optional child's sub-document into the held child, which is created when there is none. Without
/// the element the child is released. A child that cannot be created makes the read fail with E_POINTER.
template<class Interface>
void ReadOptionalChild(QxXmlParser& parser, ChildReader& children, XmlName name, const wchar_t* progId,
                       REFIID iid, ComPtr<Interface>& child) {
    if (!children.Find(name)) {
        child = {};
        return;
    }
    if (!child)
        CreateByProgId(progId, iid, child.PutVoid());
    PutChildXml(child, parser.GetChildSubDocument(), iid);
}

} // namespace

QxXmlWriter CPrintJobImpl::WriteXml() {
    StampTimes();
    QxXmlWriter writer;
    writer.OpenStartTag(L"PrintJob");
    writer.Attribute(L"xmlns", QX_XML_NAMESPACE_BASE L"/OutputManagement/PrintJob");
    writer.Attribute(L"Version", m_version.AsString());
    writer.CloseStartTag();
    WriteUser(writer);
    WriteJob(writer);
    WriteOrigin(writer);
    WriteChildren(writer);
    writer.EndTag(L"PrintJob");
    return writer;
}

void CPrintJobImpl::ReadXml(std::wstring_view xml) {
    QxXmlParser parser;
    RecordReading::OpenRoot(parser, xml, L"PrintJob");
    ReadVersion(parser);
    ChildReader children(parser);
    const bool fromSystemUser = ReadUser(children);
    ReadTimes(parser, children);
    ReadJob(children);
    ReadLogTarget(parser, children);
    ReadOrigin(parser, children, fromSystemUser);
    ReadChildren(parser, children);
}

void CPrintJobImpl::ReadVersion(const QxXmlParser& parser) {
    const std::wstring_view text = parser.GetRawAttribute(L"Version");
    m_version = text.empty() ? assumedVersion : RecordReading::ParseVersion(text);
    if (m_version < lowestVersion)
        m_version = lowestVersion;
}

void CPrintJobImpl::WriteUser(QxXmlWriter& writer) const {
    writer.Element(L"JobGuid", m_jobGuid);
    writer.Element(L"CustomerCode", m_customerCode);
    writer.Element(L"UserName", m_userName);
    if (m_version >= userDomainVersion)
        writer.Element(L"UserDomainName", m_userDomainName);
    if (m_version >= systemUserVersion)
        writer.Element(L"FromSystemUser", m_fromSystemUser);
    if (m_version >= desktopUserVersion) {
        writer.Element(L"DesktopUserName", m_desktopUserName);
        writer.Element(L"DesktopUserDomainName", m_desktopUserDomainName);
    }
}

/// Gives FromSystemUser: the element stands here, but a read that fails at the log target keeps the field.
bool CPrintJobImpl::ReadUser(ChildReader& children) {
    m_jobGuid = children.Text(L"JobGuid");
    m_customerCode = children.Text(L"CustomerCode");
    m_userName = children.Text(L"UserName");
    if (m_version >= userDomainVersion)
        m_userDomainName = children.Text(L"UserDomainName");
    const bool fromSystemUser = m_version >= systemUserVersion && children.Flag(L"FromSystemUser");
    if (m_version >= desktopUserVersion) {
        m_desktopUserName = children.Text(L"DesktopUserName");
        m_desktopUserDomainName = children.Text(L"DesktopUserDomainName");
    }
    return fromSystemUser;
}

void CPrintJobImpl::ReadTimes(const QxXmlParser& parser, ChildReader& children) {
    const QxString local = children.Text(L"JobTimeLocal");
    m_jobTimeLocalMsec = Milliseconds(local);
    m_jobTimeLocal = local.empty() ? QxDateTime() : QxDateTime::Parse(local);
    if (children.Find(L"JobTimeUtc")) {
        const QxString utc = parser.GetChildData();
        m_jobTimeUtc = utc.empty() ? Clock::UtcNow() : QxDateTime::Parse(utc);
    }
    StampTimes();
}

void CPrintJobImpl::WriteJob(QxXmlWriter& writer) const {
    writer.Element(L"JobTimeLocal", m_jobTimeLocal.Format(m_jobTimeLocalMsec));
    writer.Element(L"JobTimeUtc", m_jobTimeUtc.Format());
    writer.Element(L"JobSize", m_jobSize);
    writer.Element(L"JobName", m_jobName);
    writer.Element(L"JobFileName", m_jobFileName);
    writer.Element(L"JobDataType", m_jobDataType);
    if (m_version < s_logTargetVersion) {
        writer.Element(L"LogicalPrinterGuid", m_logTarget);
        return;
    }
    writer.OpenStartTag(L"LogTarget");
    writer.Attribute(L"Type", LogTargetTypeName(m_logTargetType));
    writer.CloseWithData(L"LogTarget", m_logTarget);
}

void CPrintJobImpl::ReadJob(ChildReader& children) {
    m_jobSize = children.PositiveNumber(L"JobSize");
    m_jobName = children.Text(L"JobName");
    m_jobFileName = children.Text(L"JobFileName");
    m_jobDataType = children.Text(L"JobDataType");
}

void CPrintJobImpl::ReadLogTarget(const QxXmlParser& parser, ChildReader& children) {
    std::int32_t type = LogTargetNone;
    QxString value;
    if (m_version < s_logTargetVersion) {
        value = children.Text(L"LogicalPrinterGuid");
        if (!value.empty())
            type = LogTargetLogicalPrinter;
    } else if (children.Find(L"LogTarget")) {
        type = LogTargetTypeFromName(parser.GetChildAttribute(L"Type"));
        value = parser.GetChildData();
    }
    SetLogTarget(type, std::move(value));
}

void CPrintJobImpl::WriteOrigin(QxXmlWriter& writer) const {
    writer.Element(L"MachineName", m_machineName);
    if (m_version >= s_logTargetVersion) {
        writer.Element(L"ApplicationName", m_applicationName);
        if (m_version >= dataSourceVersion)
            writer.Element(L"ApplicationDescription", m_applicationDescription);
        writer.Element(L"VpnConnected", m_vpnConnected);
    }
    if (m_version >= tonerVersion && m_tonerCoverage != -1) {
        writer.OpenStartTag(L"Toner");
        writer.CloseStartTag();
        writer.Element(L"Coverage", m_tonerCoverage);
        writer.Element(L"Saving", m_tonerSaving);
        writer.EndTag(L"Toner");
    }
    if (m_version >= dataSourceVersion)
        writer.Element(L"DataSource", m_dataSource);
    if (m_version >= systemUserVersion)
        writer.Element(L"FromSystemUser", m_fromSystemUser); // a second time: peers know the form so
    writer.Element(L"JobContentsSource", m_jobContentsSource);
    writer.Element(L"JobContentsDiscardCount", m_jobContentsDiscardCount);
}

void CPrintJobImpl::ReadOrigin(QxXmlParser& parser, ChildReader& children, bool fromSystemUser) {
    m_machineName = children.Text(L"MachineName");
    const bool hasApplication = m_version >= s_logTargetVersion;
    const bool hasDataSource = m_version >= dataSourceVersion;
    m_applicationName = hasApplication ? children.Text(L"ApplicationName") : QxString();
    m_applicationDescription = hasDataSource ? children.Text(L"ApplicationDescription") : QxString();
    m_vpnConnected = hasApplication && children.Flag(L"VpnConnected");
    ReadToner(parser, children);
    m_dataSource = hasDataSource ? children.Number(L"DataSource") : 0;
    m_fromSystemUser = fromSystemUser;
    m_jobContentsSource = children.PositiveNumber(L"JobContentsSource");
    m_jobContentsDiscardCount = children.PositiveNumber(L"JobContentsDiscardCount");
}

void CPrintJobImpl::ReadToner(QxXmlParser& parser, ChildReader& children) {
    m_tonerCoverage = -1;
    m_tonerSaving = -1;
    if (m_version < tonerVersion || !children.Find(L"Toner"))
        return;
    parser.IntoElement();
    ChildReader toner(parser);
    m_tonerCoverage = toner.Number(L"Coverage");
    m_tonerSaving = toner.Number(L"Saving");
    parser.OutOfElement();
}

void CPrintJobImpl::WriteChildren(QxXmlWriter& writer) const {
    writer.Raw(GetChildXml(m_jobContents, IID_IJobContents).View());
    WritePageCounterInfo(writer);
    if (m_windowsPrintInfo)
        writer.Raw(GetChildXml(m_windowsPrintInfo, IID_IWindowsPrintInfo).View());
    if (m_version >= policyResultsVersion && m_policyResults)
        writer.Raw(GetChildXml(m_policyResults, IID_IPolicyResults).View());
}

void CPrintJobImpl::WritePageCounterInfo(QxXmlWriter& writer) const {
    writer.OpenStartTag(L"PageCounterInfo");
    writer.CloseStartTag();
    if (m_pageCounterJobContents)
        writer.Raw(GetChildXml(m_pageCounterJobContents, IID_IJobContents).View());
    writer.Element(L"PageCounterErrorMessage", m_pageCounterErrorMessage);
    writer.Element(L"PageCounterResult", m_pageCounterResult);
    writer.EndTag(L"PageCounterInfo");
}

void CPrintJobImpl::ReadChildren(QxXmlParser& parser, ChildReader& children) {
    ReadJobContents(parser, children);
    ReadPageCounterInfo(parser, children);
    ReadOptionalChild(parser, children, L"WindowsPrintInfo", L"Corvane.WindowsPrintInfo",
                      IID_IWindowsPrintInfo, m_windowsPrintInfo);
    if (m_version >= policyResultsVersion)
        ReadOptionalChild(parser, children, L"PolicyResults", L"Corvane.PolicyResults", IID_IPolicyResults,
                          m_policyResults);
    else
        m_policyResults = {};
}

void CPrintJobImpl::ReadJobContents(const QxXmlParser& parser, ChildReader& children) {
    const bool present = children.Find(L"JobContents");
    if (!present)
        m_jobContents = {};
    if (!m_jobContents)
        ThrowIfFailed(CreateByProgId(L"Corvane.JobContents", IID_IJobContents, m_jobContents.PutVoid()));
    if (present)
        PutChildXml(m_jobContents, parser.GetChildSubDocument(), IID_IJobContents);
}

void CPrintJobImpl::ReadPageCounterInfo(QxXmlParser& parser, ChildReader& children) {
    if (!children.Find(L"PageCounterInfo")) {
        m_pageCounterJobContents = {};
        m_pageCounterErrorMessage = {};
        m_pageCounterResult = {};
        return;
    }
    parser.IntoElement();
    ChildReader info(parser);
    if (!info.Find(L"JobContents")) {
        m_pageCounterJobContents = {};
    } else {
        if (!m_pageCounterJobContents)
            ThrowIfFailed(
                CreateByProgId(L"Corvane.JobContents", IID_IJobContents, m_pageCounterJobContents.PutVoid()));
        PutChildXml(m_pageCounterJobContents, parser.GetChildSubDocument(), IID_IJobContents);
    }
    m_pageCounterErrorMessage = info.Text(L"PageCounterErrorMessage");
    m_pageCounterResult = info.Text(L"PageCounterResult");
    parser.OutOfElement();
}
