#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/ElementTable.h"
#include "JobObjects/frame/Record.h"
#include "common/QxVersion.h"
#include "common/xml/RecordReading.h"

/// A print queue: names, driver, print monitor, print processor, and the dates of its first and last
/// transaction. Aggregatable.
class CLogicalPrinterImpl : public Record<ILogicalPrinter, IID_ILogicalPrinter> {
public:
    using Self = CLogicalPrinterImpl;
    static constexpr NameLiteral ClassName{L"CLogicalPrinterImpl"};

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_DriverInfoXml(BSTR* pVal) override;
    DERIVED_PROPERTY(get_Version, BSTR, m_version.AsString())

    TEXT_PROPERTY(get_LogicalPrinterGuid, put_LogicalPrinterGuid, m_logicalPrinterGuid)
    TEXT_PROPERTY(get_CustomerCode, put_CustomerCode, m_customerCode)
    TEXT_PROPERTY(get_MachineGuid, put_MachineGuid, m_machineGuid)
    DATE_PROPERTY(get_FirstTransactionDate, put_FirstTransactionDate, m_firstTransactionDate)
    DATE_PROPERTY(get_LastTransactionDate, put_LastTransactionDate, m_lastTransactionDate)
    TEXT_PROPERTY(get_PrinterName, put_PrinterName, m_printerName)
    TEXT_PROPERTY(get_PortName, put_PortName, m_portName)
    FLAG_PROPERTY(get_IsSecurePrint, put_IsSecurePrint, m_isSecurePrint)
    TEXT_PROPERTY(get_ShareName, put_ShareName, m_shareName)
    TEXT_PROPERTY(get_ServerName, put_ServerName, m_serverName)
    TEXT_PROPERTY(get_Location, put_Location, m_location)
    TEXT_PROPERTY(get_Comments, put_Comments, m_comments)
    NUMBER_PROPERTY(get_Attributes, put_Attributes, m_attributes)
    FLAG_PROPERTY(get_ColorCapable, put_ColorCapable, m_colorCapable)
    TEXT_PROPERTY(get_TrackerVersion, put_TrackerVersion, m_trackerVersion)
    NUMBER_PROPERTY(get_BuildNumber, put_BuildNumber, m_buildNumber)
    TEXT_PROPERTY(get_DriverName, put_DriverName, m_driverName)
    TEXT_PROPERTY(get_DriverFileName, put_DriverFileName, m_driverFileName)
    TEXT_PROPERTY(get_DriverDataFileName, put_DriverDataFileName, m_driverDataFileName)
    TEXT_PROPERTY(get_DriverFileDescription, put_DriverFileDescription, m_driverFileDescription)
    TEXT_PROPERTY(get_DriverCompanyName, put_DriverCompanyName, m_driverCompanyName)
    TEXT_PROPERTY(get_DriverFileVersion, put_DriverFileVersion, m_driverFileVersion)
    TEXT_PROPERTY(get_PrintMonitorName, put_PrintMonitorName, m_printMonitorName)
    TEXT_PROPERTY(get_PrintMonitorFileName, put_PrintMonitorFileName, m_printMonitorFileName)
    TEXT_PROPERTY(get_PrintMonitorFileDescription, put_PrintMonitorFileDescription,
                  m_printMonitorFileDescription)
    TEXT_PROPERTY(get_PrintMonitorCompanyName, put_PrintMonitorCompanyName, m_printMonitorCompanyName)
    TEXT_PROPERTY(get_PrintMonitorFileVersion, put_PrintMonitorFileVersion, m_printMonitorFileVersion)
    TEXT_PROPERTY(get_PrintProcessorName, put_PrintProcessorName, m_printProcessorName)
    TEXT_PROPERTY(get_PrinterInfo, put_PrinterInfo, m_printerInfo)
    HRESULT STDMETHODCALLTYPE get_Destination(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Destination(BSTR newVal) override;

private:
    static const Element<Self> Elements[]; // CLogicalPrinterXml.cpp

    bool IsOlderForm() const noexcept;
    QxXmlWriter WriteXml();
    void ReadVersion(const QxXmlParser& parser);
    void ReadXml(QxXmlParser& parser);

    /// Fills in missing transaction dates and moves a last date that is before the first.
    void NormalizeTransactionDates() noexcept;

    QxVersion m_version{7, 0};
    QxDateTime m_firstTransactionDate;
    QxDateTime m_lastTransactionDate;
    QxString m_logicalPrinterGuid;
    QxString m_customerCode;
    QxString m_machineGuid;
    QxString m_printerName;
    QxString m_portName;
    QxString m_shareName;
    QxString m_serverName;
    QxString m_location;
    QxString m_comments;
    QxString m_printProcessorName;
    QxString m_driverName;
    QxString m_driverFileName;
    QxString m_driverDataFileName;
    QxString m_driverFileDescription;
    QxString m_driverCompanyName;
    QxString m_driverFileVersion;
    QxString m_printMonitorName;
    QxString m_printMonitorFileName;
    QxString m_printMonitorFileDescription;
    QxString m_printMonitorCompanyName;
    QxString m_printMonitorFileVersion;
    bool m_isSecurePrint = false;
    std::int32_t m_attributes = 0;
    std::int32_t m_buildNumber = 0;
    QxString m_trackerVersion;
    bool m_colorCapable = false;
    QxString m_printerInfo; // markup
    QxString m_destination; // markup

    // For peers of the older form; without properties.
    QxString m_serverShareName;
    QxString m_portConfig; // markup
    QxString m_printProcessorFileName;
    QxString m_printProcessorFileDescription;
    QxString m_printProcessorCompanyName;
    QxString m_printProcessorFileVersion;
    QxString m_printProviderName;
    QxString m_printProviderFileName;
    QxString m_printProviderFileDescription;
    QxString m_printProviderCompanyName;
    QxString m_printProviderFileVersion;
    QxString m_portIpAddress;
    QxString m_portHostName;
    QxString m_portQueueName;
    QxString m_serverIpAddress;
};
