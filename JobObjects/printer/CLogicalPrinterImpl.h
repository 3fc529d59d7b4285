#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/Record.h"
#include "common/QxVersion.h"
#include "common/RecordReading.h"

/// One print queue as the agent sees it: its names, driver, print monitor and print processor, and the dates
/// of its first and last transaction. Stored values only. May be part of an aggregate.
class CLogicalPrinterImpl : public Record<ILogicalPrinter, IID_ILogicalPrinter> {
public:
    static constexpr const wchar_t* ConstructionSource =
        METHOD_SOURCE(CLogicalPrinterImpl, CLogicalPrinterImpl);

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_DriverInfoXml(BSTR* pVal) override;
    DERIVED_PROPERTY(CLogicalPrinterImpl, Version, BSTR, m_version.AsString())

    TEXT_PROPERTY(CLogicalPrinterImpl, LogicalPrinterGuid, m_logicalPrinterGuid)
    TEXT_PROPERTY(CLogicalPrinterImpl, CustomerCode, m_customerCode)
    TEXT_PROPERTY(CLogicalPrinterImpl, MachineGuid, m_machineGuid)
    DATE_PROPERTY(FirstTransactionDate, m_firstTransactionDate)
    DATE_PROPERTY(LastTransactionDate, m_lastTransactionDate)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrinterName, m_printerName)
    TEXT_PROPERTY(CLogicalPrinterImpl, PortName, m_portName)
    FLAG_PROPERTY(IsSecurePrint, m_isSecurePrint)
    TEXT_PROPERTY(CLogicalPrinterImpl, ShareName, m_shareName)
    TEXT_PROPERTY(CLogicalPrinterImpl, ServerName, m_serverName)
    TEXT_PROPERTY(CLogicalPrinterImpl, Location, m_location)
    TEXT_PROPERTY(CLogicalPrinterImpl, Comments, m_comments)
    NUMBER_PROPERTY(Attributes, m_attributes)
    FLAG_PROPERTY(ColorCapable, m_colorCapable)
    TEXT_PROPERTY(CLogicalPrinterImpl, TrackerVersion, m_trackerVersion)
    NUMBER_PROPERTY(BuildNumber, m_buildNumber)
    TEXT_PROPERTY(CLogicalPrinterImpl, DriverName, m_driverName)
    TEXT_PROPERTY(CLogicalPrinterImpl, DriverFileName, m_driverFileName)
    TEXT_PROPERTY(CLogicalPrinterImpl, DriverDataFileName, m_driverDataFileName)
    TEXT_PROPERTY(CLogicalPrinterImpl, DriverFileDescription, m_driverFileDescription)
    TEXT_PROPERTY(CLogicalPrinterImpl, DriverCompanyName, m_driverCompanyName)
    TEXT_PROPERTY(CLogicalPrinterImpl, DriverFileVersion, m_driverFileVersion)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrintMonitorName, m_printMonitorName)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrintMonitorFileName, m_printMonitorFileName)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrintMonitorFileDescription, m_printMonitorFileDescription)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrintMonitorCompanyName, m_printMonitorCompanyName)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrintMonitorFileVersion, m_printMonitorFileVersion)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrintProcessorName, m_printProcessorName)
    TEXT_PROPERTY(CLogicalPrinterImpl, PrinterInfo, m_printerInfo)
    HRESULT STDMETHODCALLTYPE get_Destination(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Destination(BSTR newVal) override;

private:
    struct Element;
    static const Element s_elements[]; // the XML form, CLogicalPrinterXml.cpp

    bool IsOlderForm() const noexcept;
    QxXmlWriter WriteXml();
    void ReadVersion(const QxXmlParser& parser);
    void ReadElements(QxXmlParser& parser);
    void ReadElement(const QxXmlParser& parser, ChildReader& children, const Element& element);

    /// Fills in missing transaction dates and keeps the last one from lying before the first.
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

    // Carried for peers of the older form only; they have no property.
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
