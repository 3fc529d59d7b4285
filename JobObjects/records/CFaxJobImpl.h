#pragma once

#include "DeviceJob.h"
#include "JobObjects/frame/Record.h"
#include "common/XmlNamespace.h"

/// One fax job at a device: also the number, the remote station and how long it took.
class CFaxJobImpl : public Record<IFaxJob, IID_IFaxJob> {
public:
    static constexpr const wchar_t* ConstructionSource = METHOD_SOURCE(CFaxJobImpl, CFaxJobImpl);

    DEVICE_JOB_PROPERTIES(CFaxJobImpl, m_job)
    TEXT_PROPERTY(CFaxJobImpl, PhoneNumber, m_phoneNumber)
    TEXT_PROPERTY(CFaxJobImpl, RemoteStationId, m_remoteStationId)
    NUMBER_PROPERTY(Duration, m_duration)

private:
    static constexpr DeviceJob::Form s_form{L"FaxJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/FaxJob",
                                            QxVersion(4, 2), QxVersion(4, 2)};

    std::span<const DeviceJob::OwnField> OwnFields() const noexcept { return m_ownFields; }

    DeviceJob m_job{s_form};
    QxString m_phoneNumber;
    QxString m_remoteStationId;
    std::int32_t m_duration = 0;
    const DeviceJob::OwnField m_ownFields[3] = {{L"PhoneNumber", &m_phoneNumber, nullptr},
                                                {L"RemoteStationId", &m_remoteStationId, nullptr},
                                                {L"Duration", nullptr, &m_duration}};
};
