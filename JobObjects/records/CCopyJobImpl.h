#pragma once

#include "DeviceJob.h"
#include "JobObjects/frame/Record.h"
#include "common/XmlNamespace.h"

/// One copy job at a device.
class CCopyJobImpl : public Record<ICopyJob, IID_ICopyJob> {
public:
    static constexpr const wchar_t* ConstructionSource = METHOD_SOURCE(CCopyJobImpl, CCopyJobImpl);

    DEVICE_JOB_PROPERTIES(CCopyJobImpl, m_job)

private:
    static constexpr DeviceJob::Form s_form{L"CopyJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/CopyJob",
                                            QxVersion(4, 0), QxVersion()};

    std::span<const DeviceJob::OwnField> OwnFields() const noexcept { return {}; }

    DeviceJob m_job{s_form};
};
