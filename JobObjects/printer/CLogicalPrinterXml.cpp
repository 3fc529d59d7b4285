// The XML forms of a logical printer: one table for all versions.

#include "CLogicalPrinterImpl.h"

#include "common/xml/QxXmlWriter.h"
#include "common/xml/XmlNamespace.h"

namespace {

constexpr QxVersion AssumedVersion(3, 0); // without a Version attribute
constexpr QxVersion CurrentForm(3, 6);    // lower versions: the older form
constexpr QxVersion ColorCapableVersion(4, 0);
constexpr QxVersion TrackerVersion(6, 0);
constexpr QxVersion SecurePrintVersion(7, 0);

} // namespace

constexpr Element<CLogicalPrinterImpl> CLogicalPrinterImpl::Elements[] = {
    {L"LogicalPrinterGuid", &Self::m_logicalPrinterGuid},
    {L"CustomerCode", &Self::m_customerCode},
    {L"MachineGuid", &Self::m_machineGuid},
    {L"FirstTransactionDate", &Self::m_firstTransactionDate},
    {L"LastTransactionDate", &Self::m_lastTransactionDate},
    {L"PrinterName", &Self::m_printerName},
    {L"PortName", &Self::m_portName},
    Element(L"PortConfig", &Self::m_portConfig).AsMarkup().Until(CurrentForm),
    Element(L"IsSecurePrint", &Self::m_isSecurePrint).Since(SecurePrintVersion).WhenMissing(Missing::Kept),
    {L"ShareName", &Self::m_shareName},
    {L"ServerName", &Self::m_serverName},
    Element(L"ServerShareName", &Self::m_serverShareName).Until(CurrentForm),
    {L"Location", &Self::m_location},
    {L"Comments", &Self::m_comments},
    Element(L"Attributes", &Self::m_attributes).Since(CurrentForm).WhenMissing(Missing::Kept),
    Element(L"ColorCapable", &Self::m_colorCapable).Since(ColorCapableVersion).WhenMissing(Missing::Kept),
    Element(L"TrackerVersion", &Self::m_trackerVersion).Since(TrackerVersion),
    Element(L"BuildNumber", &Self::m_buildNumber)
        .Since(CurrentForm)
        .Until(TrackerVersion)
        .WhenMissing(Missing::Kept),
    {L"DriverName", &Self::m_driverName},
    {L"DriverFileName", &Self::m_driverFileName},
    {L"DriverDataFileName", &Self::m_driverDataFileName},
    {L"DriverFileDescription", &Self::m_driverFileDescription},
    {L"DriverCompanyName", &Self::m_driverCompanyName},
    {L"DriverFileVersion", &Self::m_driverFileVersion},
    {L"PrintMonitorName", &Self::m_printMonitorName},
    {L"PrintMonitorFileName", &Self::m_printMonitorFileName},
    {L"PrintMonitorFileDescription", &Self::m_printMonitorFileDescription},
    {L"PrintMonitorCompanyName", &Self::m_printMonitorCompanyName},
    {L"PrintMonitorFileVersion", &Self::m_printMonitorFileVersion},
    {L"PrintProcessorName", &Self::m_printProcessorName},
    Element(L"PrintProcessorFileName", &Self::m_printProcessorFileName).Until(CurrentForm),
    Element(L"PrintProcessorFileDescription", &Self::m_printProcessorFileDescription).Until(CurrentForm),
    Element(L"PrintProcessorCompanyName", &Self::m_printProcessorCompanyName).Until(CurrentForm),
    Element(L"PrintProcessorFileVersion", &Self::m_printProcessorFileVersion).Until(CurrentForm),
    Element(L"PrintProviderName", &Self::m_printProviderName).Until(CurrentForm),
    Element(L"PrintProviderFileName", &Self::m_printProviderFileName).Until(CurrentForm),
    Element(L"PrintProviderFileDescription", &Self::m_printProviderFileDescription).Until(CurrentForm),
    Element(L"PrintProviderCompanyName", &Self::m_printProviderCompanyName).Until(CurrentForm),
    Element(L"PrintProviderFileVersion", &Self::m_printProviderFileVersion).Until(CurrentForm),
    Element(L"PortIpAddress", &Self::m_portIpAddress).Until(CurrentForm),
    Element(L"PortHostName", &Self::m_portHostName).Until(CurrentForm),
    Element(L"PortQueueName", &Self::m_portQueueName).Until(CurrentForm),
    Element(L"ServerIpAddress", &Self::m_serverIpAddress).Until(CurrentForm),
    Element(L"PrinterInfo", &Self::m_printerInfo).AsMarkup().Since(CurrentForm),
    Element(L"Destination", &Self::m_destination).AsMarkup().Since(CurrentForm),
};

bool CLogicalPrinterImpl::IsOlderForm() const noexcept {
    return m_version < CurrentForm;
}

QxXmlWriter CLogicalPrinterImpl::WriteXml() {
    NormalizeTransactionDates();
    QxXmlWriter writer;
    writer.BeginRecord(L"LogicalPrinter", QX_XML_NAMESPACE_BASE L"/OutputManagement/LogicalPrinter",
                       m_version);
    WriteElements(writer, m_version, *this, Elements);
    writer.EndTag(L"LogicalPrinter");
    return writer;
}

void CLogicalPrinterImpl::ReadVersion(const QxXmlParser& parser) {
    QxString text;
    m_version = parser.FindAttribute(L"Version", text) ? QxVersion(text) : AssumedVersion;
    m_version.CheckValid();
}

void CLogicalPrinterImpl::ReadXml(QxXmlParser& parser) {
    ChildReader children(parser);
    ReadElements(parser, children, m_version, *this, Elements);
    NormalizeTransactionDates();
}
