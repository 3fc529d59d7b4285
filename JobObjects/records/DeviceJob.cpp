#include "DeviceJob.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/Clock.h"

#include <algorithm>

namespace {
constexpr QxVersion PolicyResultsVersion(4, 0);
}

constexpr Element<DeviceJob> DeviceJob::SharedElements[] = {
    {L"JobGuid", &DeviceJob::m_jobGuid},
    {L"CustomerCode", &DeviceJob::m_customerCode},
    Element(L"IdentifierType", &DeviceJob::m_identifierType).AtLeast(0),
    {L"IdentifierData", &DeviceJob::m_identifierData},
    Element(L"DeviceId", &DeviceJob::m_deviceId).AtLeast(0),
    {L"JobTimeLocal", &DeviceJob::m_jobTimeLocal},
};

DeviceJob::DeviceJob(const QxVersion& initialVersion)
    : m_version(initialVersion), m_jobTimeLocal(Clock::LocalNow()) {
    m_jobContents = CreateChild<IJobContents>();
}

QxXmlWriter DeviceJob::BeginXml(const DeviceJobForm& form) const {
    QxXmlWriter writer(2048);
    writer.BeginRecord(form.root, form.xmlNamespace, m_version);
    WriteElements(writer, m_version, *this, SharedElements);
    return writer;
}

void DeviceJob::EndXml(QxXmlWriter& writer, const DeviceJobForm& form) const {
    WriteChild(writer, m_jobContents);
    if (m_version >= PolicyResultsVersion && m_policyResults)
        WriteChild(writer, m_policyResults);
    writer.EndTag(form.root);
}

ChildReader DeviceJob::OpenXml(QxXmlParser& parser, std::wstring_view xml, const DeviceJobForm& form) {
    RecordReading::OpenRoot(parser, xml, form.root);
    m_version = std::max(RecordReading::ParseVersion(parser.GetRawAttribute(L"Version")), form.lowestVersion);
    ChildReader children(parser);
    ReadElements(parser, children, m_version, *this, SharedElements);
    return children;
}

void DeviceJob::ReadChildren(QxXmlParser& parser, ChildReader& children) {
    if (!children.Find(L"JobContents"))
        throw QxException(L"JobContents element is missing.");
    ReadChild(parser, m_jobContents);

    if (m_version < PolicyResultsVersion || !children.Find(L"PolicyResults")) {
        m_policyResults = {};
        return;
    }
    if (!m_policyResults)
        m_policyResults = CreateChild<IPolicyResults>();
    ReadChild(parser, m_policyResults);
}
