#pragma once

#include "DeviceJob.h"

/// A copy job at a device.
class CCopyJobImpl : public DeviceJobRecord<CCopyJobImpl, ICopyJob, IID_ICopyJob> {
public:
    static constexpr NameLiteral ClassName{L"CCopyJobImpl"};

    static constexpr DeviceJobForm Form{L"CopyJob", QX_XML_NAMESPACE_BASE L"/OutputManagement/CopyJob",
                                        QxVersion(4, 0), QxVersion()};
    static constexpr ElementTable<Self> Elements{};
};
