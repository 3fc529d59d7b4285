#include "DeviceJob.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/Clock.h"

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

void DeviceJob::WriteChildren(QxXmlWriter& writer) const {
    writer.Raw(GetChildXml(m_jobContents).View());
    if (m_version >= PolicyResultsVersion && m_policyResults)
        writer.Raw(GetChildXml(m_policyResults).View());
}

void DeviceJob::ReadChildren(const QxXmlParser& parser, ChildReader& children) {
    if (!children.Find(L"JobContents"))
        throw QxException(L"JobContents element is missing.");
    PutChildXml(m_jobContents, parser.GetChildSubDocument());

    if (m_version < PolicyResultsVersion || !children.Find(L"PolicyResults")) {
        m_policyResults = {};
        return;
    }
    if (!m_policyResults)
        m_policyResults = CreateChild<IPolicyResults>();
    PutChildXml(m_policyResults, parser.GetChildSubDocument());
}
