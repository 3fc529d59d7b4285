#pragma once

#include "DeviceJob.h"

/// A scan job at a device, with destination and duration.
class CScanJobImpl : public DeviceJobRecord<CScanJobImpl, IScanJob, IID_IScanJob> {
public:
    static constexpr NameLiteral ClassName{L"CScanJobImpl"};

    NUMBER_PROPERTY(get_DestinationType, put_DestinationType, m_destinationType)
    TEXT_PROPERTY(get_Destination, put_Destination, m_destination)
    NUMBER_PROPERTY(get_Duration, put_Duration, m_duration)

    static constexpr DeviceJobForm Form{L"ScanJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/ScanJob",
                                        QxVersion(4, 0), QxVersion()};
    static const Element<Self> Elements[3];

private:
    std::int32_t m_destinationType = 0;
    QxString m_destination;
    std::int32_t m_duration = 0;
};

inline constexpr Element<CScanJobImpl> CScanJobImpl::Elements[] = {
    Element(L"DestinationType", &Self::m_destinationType).AtLeast(0),
    {L"Destination", &Self::m_destination},
    Element(L"Duration", &Self::m_duration).AtLeast(0),
};
