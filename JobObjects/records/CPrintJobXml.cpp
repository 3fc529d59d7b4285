// The XML forms of a print job: the version selects the elements, for writing and reading alike.

#include "CPrintJobImpl.h"

#include "JobObjects/frame/ChildRecord.h"
#include "LogTargetTypes.h"
#include "common/Clock.h"
#include "common/text/Numbers.h"
#include "common/xml/XmlNamespace.h"

namespace {

constexpr QxVersion AssumedVersion(3, 0); // without a Version attribute
constexpr QxVersion LowestVersion(3, 5);
constexpr QxVersion PolicyResultsVersion(4, 0);
constexpr QxVersion TonerVersion(4, 3);
constexpr QxVersion DataSourceVersion(5, 1); // also ApplicationDescription
constexpr QxVersion UserDomainVersion(6, 0);
constexpr QxVersion SystemUserVersion(7, 4);
constexpr QxVersion DesktopUserVersion(7, 26);

/// The three digits after the first ".", 0 if there are fewer characters.
std::int32_t Milliseconds(std::wstring_view text) noexcept {
    const std::size_t dot = text.find(L'.');
    return dot != std::wstring_view::npos && dot + 4 <= text.size()
               ? QxMisc::ParseInt32(text.substr(dot + 1, 3))
               : 0;
}

/// Reads an optional child, creating it if necessary; releases it if the element is missing. A failed
/// creation is E_POINTER for any reason: callers expect that.
template<class Interface>
void ReadOptionalChild(const QxXmlParser& parser, ChildReader& children, XmlName name,
                       ComPtr<Interface>& child) {
    if (!children.Find(name)) {
        child = {};
        return;
    }
    if (!child &&
        FAILED(CreateByProgId(ChildClass<Interface>::ProgId, ChildClass<Interface>::Iid, child.PutVoid())))
        throw ComError(E_POINTER);
    PutChildXml(child, parser.GetChildSubDocument());
}

} // namespace

constexpr Element<CPrintJobImpl> CPrintJobImpl::Elements[] = {
    {L"JobGuid", &Self::m_jobGuid},
    {L"CustomerCode", &Self::m_customerCode},
    {L"UserName", &Self::m_userName},
    Element(L"UserDomainName", &Self::m_userDomainName).Since(UserDomainVersion),
    {&Self::WriteFromSystemUser, &Self::PassFromSystemUser},
    Element(L"DesktopUserName", &Self::m_desktopUserName).Since(DesktopUserVersion),
    Element(L"DesktopUserDomainName", &Self::m_desktopUserDomainName).Since(DesktopUserVersion),
    {&Self::WriteTimes, &Self::ReadTimes},
    Element(L"JobSize", &Self::m_jobSize).AtLeast(0),
    {L"JobName", &Self::m_jobName},
    {L"JobFileName", &Self::m_jobFileName},
    {L"JobDataType", &Self::m_jobDataType},
    {&Self::WriteLogTarget, &Self::ReadLogTarget},
    {L"MachineName", &Self::m_machineName},
    Element(L"ApplicationName", &Self::m_applicationName)
        .Since(LogTargetVersion)
        .WhenMissing(Missing::ResetInAnyForm),
    Element(L"ApplicationDescription", &Self::m_applicationDescription)
        .Since(DataSourceVersion)
        .WhenMissing(Missing::ResetInAnyForm),
    Element(L"VpnConnected", &Self::m_vpnConnected)
        .Since(LogTargetVersion)
        .WhenMissing(Missing::ResetInAnyForm),
    {&Self::WriteToner, &Self::ReadToner},
    Element(L"DataSource", &Self::m_dataSource).Since(DataSourceVersion).WhenMissing(Missing::ResetInAnyForm),
    {&Self::WriteFromSystemUser,
     &Self::ReadFromSystemUser}, // written twice on purpose: released peers expect it
    Element(L"JobContentsSource", &Self::m_jobContentsSource).AtLeast(0),
    Element(L"JobContentsDiscardCount", &Self::m_jobContentsDiscardCount).AtLeast(0),
};

QxXmlWriter CPrintJobImpl::WriteXml() {
    StampTimes();
    QxXmlWriter writer;
    writer.BeginRecord(L"PrintJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/PrintJob", m_version);
    WriteElements(writer, m_version, *this, Elements);
    WriteChildren(writer);
    writer.EndTag(L"PrintJob");
    return writer;
}

void CPrintJobImpl::ReadXml(std::wstring_view xml) {
    QxXmlParser parser;
    RecordReading::OpenRoot(parser, xml, L"PrintJob");
    ReadVersion(parser);
    ChildReader children(parser);
    ReadElements(parser, children, m_version, *this, Elements);
    ReadChildren(parser, children);
}

void CPrintJobImpl::ReadVersion(const QxXmlParser& parser) {
    const std::wstring_view text = parser.GetRawAttribute(L"Version");
    m_version = text.empty() ? AssumedVersion : RecordReading::ParseVersion(text);
    if (m_version < LowestVersion)
        m_version = LowestVersion;
}

void CPrintJobImpl::WriteFromSystemUser(QxXmlWriter& writer) const {
    if (m_version >= SystemUserVersion)
        writer.Element(L"FromSystemUser", m_fromSystemUser);
}

/// The first FromSystemUser only keeps the reading in document order. Its value is stored after the log
/// target, by ReadFromSystemUser.
void CPrintJobImpl::PassFromSystemUser(QxXmlParser&, ChildReader& children) {
    if (m_version >= SystemUserVersion)
        children.Find(L"FromSystemUser");
}

/// Of duplicates the first counts, hence the restart.
void CPrintJobImpl::ReadFromSystemUser(QxXmlParser& parser, ChildReader&) {
    m_fromSystemUser = m_version >= SystemUserVersion && parser.FindChildElement(L"FromSystemUser", true) &&
                       parser.GetChildFlag();
}

void CPrintJobImpl::WriteTimes(QxXmlWriter& writer) const {
    writer.Element(L"JobTimeLocal", m_jobTimeLocal, m_jobTimeLocalMsec);
    writer.Element(L"JobTimeUtc", m_jobTimeUtc);
}

void CPrintJobImpl::ReadTimes(QxXmlParser& parser, ChildReader& children) {
    const QxString local = children.Text(L"JobTimeLocal");
    m_jobTimeLocalMsec = Milliseconds(local);
    m_jobTimeLocal = local.empty() ? QxDateTime() : QxDateTime::Parse(local);
    if (children.Find(L"JobTimeUtc")) {
        const QxString utc = parser.GetChildData();
        m_jobTimeUtc = utc.empty() ? Clock::UtcNow() : QxDateTime::Parse(utc);
    }
    StampTimes();
}

void CPrintJobImpl::WriteLogTarget(QxXmlWriter& writer) const {
    if (m_version < LogTargetVersion) {
        writer.Element(L"LogicalPrinterGuid", m_logTarget);
        return;
    }
    writer.OpenStartTag(L"LogTarget");
    writer.Attribute(L"Type", LogTargetTypeName(m_logTargetType));
    writer.CloseWithData(L"LogTarget", m_logTarget);
}

void CPrintJobImpl::ReadLogTarget(QxXmlParser& parser, ChildReader& children) {
    std::int32_t type = LogTargetNone;
    QxString value;
    if (m_version < LogTargetVersion) {
        value = children.Text(L"LogicalPrinterGuid");
        if (!value.empty())
            type = LogTargetLogicalPrinter;
    } else if (children.Find(L"LogTarget")) {
        type = LogTargetTypeFromName(parser.GetChildAttribute(L"Type"));
        value = parser.GetChildData();
    }
    SetLogTarget(type, std::move(value));
}

void CPrintJobImpl::WriteToner(QxXmlWriter& writer) const {
    if (m_version < TonerVersion || m_tonerCoverage == -1)
        return;
    writer.OpenStartTag(L"Toner");
    writer.CloseStartTag();
    writer.Element(L"Coverage", m_tonerCoverage);
    writer.Element(L"Saving", m_tonerSaving);
    writer.EndTag(L"Toner");
}

void CPrintJobImpl::ReadToner(QxXmlParser& parser, ChildReader& children) {
    m_tonerCoverage = -1;
    m_tonerSaving = -1;
    if (m_version < TonerVersion || !children.Find(L"Toner"))
        return;
    parser.IntoElement();
    ChildReader toner(parser);
    m_tonerCoverage = toner.Number(L"Coverage");
    m_tonerSaving = toner.Number(L"Saving");
    parser.OutOfElement();
}

void CPrintJobImpl::WriteChildren(QxXmlWriter& writer) const {
    writer.Raw(GetChildXml(m_jobContents).View());
    WritePageCounterInfo(writer);
    if (m_windowsPrintInfo)
        writer.Raw(GetChildXml(m_windowsPrintInfo).View());
    if (m_version >= PolicyResultsVersion && m_policyResults)
        writer.Raw(GetChildXml(m_policyResults).View());
}

void CPrintJobImpl::WritePageCounterInfo(QxXmlWriter& writer) const {
    writer.OpenStartTag(L"PageCounterInfo");
    writer.CloseStartTag();
    if (m_pageCounterJobContents)
        writer.Raw(GetChildXml(m_pageCounterJobContents).View());
    writer.Element(L"PageCounterErrorMessage", m_pageCounterErrorMessage);
    writer.Element(L"PageCounterResult", m_pageCounterResult);
    writer.EndTag(L"PageCounterInfo");
}

void CPrintJobImpl::ReadChildren(QxXmlParser& parser, ChildReader& children) {
    ReadJobContents(parser, children);
    ReadPageCounterInfo(parser, children);
    ReadOptionalChild(parser, children, L"WindowsPrintInfo", m_windowsPrintInfo);
    if (m_version >= PolicyResultsVersion)
        ReadOptionalChild(parser, children, L"PolicyResults", m_policyResults);
    else
        m_policyResults = {};
}

void CPrintJobImpl::ReadJobContents(const QxXmlParser& parser, ChildReader& children) {
    const bool present = children.Find(L"JobContents");
    if (!present)
        m_jobContents = {};
    if (!m_jobContents)
        m_jobContents = CreateChild<IJobContents>();
    if (present)
        PutChildXml(m_jobContents, parser.GetChildSubDocument());
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
            m_pageCounterJobContents = CreateChild<IJobContents>();
        PutChildXml(m_pageCounterJobContents, parser.GetChildSubDocument());
    }
    m_pageCounterErrorMessage = info.Text(L"PageCounterErrorMessage");
    m_pageCounterResult = info.Text(L"PageCounterResult");
    parser.OutOfElement();
}
