#pragma once

#include "DeviceJob.h"
#include "JobObjects/frame/Record.h"
#include "common/XmlNamespace.h"

/// One scan job at a device: also where the scan went and how long it took.
class CScanJobImpl : public Record<IScanJob, IID_IScanJob> {
public:
    static constexpr const wchar_t* ConstructionSource = METHOD_SOURCE(CScanJobImpl, CScanJobImpl);

    DEVICE_JOB_PROPERTIES(CScanJobImpl, m_job)
    NUMBER_PROPERTY(DestinationType, m_destinationType)
    TEXT_PROPERTY(CScanJobImpl, Destination, m_destination)
    NUMBER_PROPERTY(Duration, m_duration)

private:
    static constexpr DeviceJob::Form s_form{L"ScanJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/ScanJob",
                                            QxVersion(4, 0), QxVersion()};

    std::span<const DeviceJob::OwnField> OwnFields() const noexcept { return m_ownFields; }

    DeviceJob m_job{s_form};
    std::int32_t m_destinationType = 0;
    QxString m_destination;
    std::int32_t m_duration = 0;
    const DeviceJob::OwnField m_ownFields[3] = {{L"DestinationType", nullptr, &m_destinationType},
                                                {L"Destination", &m_destination, nullptr},
                                                {L"Duration", nullptr, &m_duration}};
};
