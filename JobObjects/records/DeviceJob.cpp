#include "DeviceJob.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/Clock.h"

namespace {
constexpr QxVersion policyResultsVersion(4, 0);
}

constexpr Element<DeviceJob> DeviceJob::s_sharedElements[] = {
    {L"JobGuid", &DeviceJob::m_jobGuid},
    {L"CustomerCode", &DeviceJob::m_customerCode},
    Element(L"IdentifierType", &DeviceJob::m_identifierType).AtLeast(0),
    {L"IdentifierData", &DeviceJob::m_identifierData},
    Element(L"DeviceId", &DeviceJob::m_deviceId).AtLeast(0),
    {L"JobTimeLocal", &DeviceJob::m_jobTimeLocal},
};

DeviceJob::DeviceJob(const QxVersion& initialVersion)
    : m_version(initialVersion), m_jobTimeLocal(Clock::LocalNow()) {
    ThrowIfFailed(CreateByProgId(L"Corvane.JobContents", IID_IJobContents, m_jobContents.PutVoid()));
}

void DeviceJob::WriteChildren(QxXmlWriter& writer) const {
    writer.Raw(GetChildXml(m_jobContents, IID_IJobContents).View());
    if (m_version >= policyResultsVersion && m_policyResults)
        writer.Raw(GetChildXml(m_policyResults, IID_IPolicyResults).View());
}

void DeviceJob::ReadChildren(const QxXmlParser& parser, ChildReader& children) {
    if (!children.Find(L"JobContents"))
        throw QxException(L"JobContents element is missing.");
    PutChildXml(m_jobContents, parser.GetChildSubDocument(), IID_IJobContents);

    if (m_version < policyResultsVersion || !children.Find(L"PolicyResults")) {
        m_policyResults = {};
        return;
    }
    if (!m_policyResults)
        ThrowIfFailed(
            CreateByProgId(L"Corvane.PolicyResults", IID_IPolicyResults, m_policyResults.PutVoid()));
    PutChildXml(m_policyResults, parser.GetChildSubDocument(), IID_IPolicyResults);
}
