#include "CPrintJobImpl.h"

#include "JobObjects/frame/ResourceStrings.h"
#include "LogTargetTypes.h"
#include "common/text/Numbers.h"
#include "common/text/Text.h"

void CPrintJobImpl::SetLogTarget(std::int32_t type, QxString value) noexcept {
    if (type != LogTargetNone && type != LogTargetLogicalPrinter && m_version < LogTargetVersion)
        m_version = LogTargetVersion;
    m_logTargetType = type;
    m_logTarget = std::move(value);
}

HRESULT CPrintJobImpl::CheckLogTargetTypeSupportsProperty(std::int32_t requiredType,
                                                          std::wstring_view propertyName) const noexcept {
    constexpr const wchar_t* source = METHOD_SOURCE(CheckLogTargetTypeSupportsProperty);
    return RunMethod(source, [&]() -> HRESULT {
        if (m_logTargetType == requiredType)
            return S_OK;
        const std::wstring message = QxMisc::FillIn(LoadResourceString(StringPropertyNotSupported),
                                                    {propertyName, LogTargetTypeName(m_logTargetType)});
        ReportException(message.c_str(), source);
        return HRESULT_FROM_WIN32(ERROR_INVALID_OPERATION);
    });
}

HRESULT CPrintJobImpl::get_LogTargetType(LONG* pVal) {
    return GetField(pVal, m_logTargetType);
}

HRESULT CPrintJobImpl::ResetLogTarget() {
    SetLogTarget(LogTargetNone, QxString());
    return S_OK;
}

// The typed getters do not change their out-value if the target is of another type.

HRESULT CPrintJobImpl::get_LogicalPrinterGuid(BSTR* pVal) {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    const HRESULT supported =
        CheckLogTargetTypeSupportsProperty(LogTargetLogicalPrinter, L"LogicalPrinterGuid");
    return FAILED(supported) ? supported : GetText(pVal, m_logTarget, METHOD_SOURCE(get_LogicalPrinterGuid));
}

HRESULT CPrintJobImpl::put_LogicalPrinterGuid(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_LogicalPrinterGuid),
                     [&] { SetLogTarget(LogTargetLogicalPrinter, QxString(BstrView(newVal))); });
}

HRESULT CPrintJobImpl::get_DeviceId(LONG* pVal) {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    const HRESULT supported = CheckLogTargetTypeSupportsProperty(LogTargetDevice, L"DeviceId");
    // Base from the text: a value read from XML may be hexadecimal or octal.
    return FAILED(supported) ? supported : GetField(pVal, QxMisc::ParseInt32(m_logTarget, 0));
}

HRESULT CPrintJobImpl::put_DeviceId(LONG newVal) {
    return RunMethod(METHOD_SOURCE(put_DeviceId),
                     [&] { SetLogTarget(LogTargetDevice, QxString(QxMisc::FormatInt32(newVal))); });
}

HRESULT CPrintJobImpl::get_DeviceAddress(BSTR* pVal) {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    const HRESULT supported = CheckLogTargetTypeSupportsProperty(LogTargetDeviceAddress, L"DeviceAddress");
    return FAILED(supported) ? supported : GetText(pVal, m_logTarget, METHOD_SOURCE(get_DeviceAddress));
}

HRESULT CPrintJobImpl::put_DeviceAddress(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_DeviceAddress),
                     [&] { SetLogTarget(LogTargetDeviceAddress, QxString(BstrView(newVal))); });
}
