#pragma once

#include "DeviceJob.h"

/// A fax job at a device, with number, remote station and duration.
class CFaxJobImpl : public DeviceJobRecord<CFaxJobImpl, IFaxJob, IID_IFaxJob> {
public:
    static constexpr NameLiteral ClassName{L"CFaxJobImpl"};

    TEXT_PROPERTY(get_PhoneNumber, put_PhoneNumber, m_phoneNumber)
    TEXT_PROPERTY(get_RemoteStationId, put_RemoteStationId, m_remoteStationId)
    NUMBER_PROPERTY(get_Duration, put_Duration, m_duration)

    static constexpr DeviceJobForm Form{L"FaxJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/FaxJob",
                                        QxVersion(4, 2), QxVersion(4, 2)};
    static const Element<Self> Elements[3];

private:
    QxString m_phoneNumber;
    QxString m_remoteStationId;
    std::int32_t m_duration = 0;
};

inline constexpr Element<CFaxJobImpl> CFaxJobImpl::Elements[] = {
    {L"PhoneNumber", &Self::m_phoneNumber},
    {L"RemoteStationId", &Self::m_remoteStationId},
    Element(L"Duration", &Self::m_duration).AtLeast(0),
};
