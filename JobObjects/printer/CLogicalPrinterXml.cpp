// The versioned XML form of a logical printer: one table that both directions and both forms go by.

#include "CLogicalPrinterImpl.h"

#include "common/xml/QxXmlWriter.h"
#include "common/xml/XmlNamespace.h"

namespace {

constexpr QxVersion assumedVersion(3, 0); // of a document that tells none
constexpr QxVersion currentForm(3, 6);    // below it the older form
constexpr QxVersion colorCapableVersion(4, 0);
constexpr QxVersion trackerVersion(6, 0);
constexpr QxVersion securePrintVersion(7, 0);

} // namespace

constexpr Element<CLogicalPrinterImpl> CLogicalPrinterImpl::s_elements[] = {
    {L"LogicalPrinterGuid", &Self::m_logicalPrinterGuid},
    {L"CustomerCode", &Self::m_customerCode},
    {L"MachineGuid", &Self::m_machineGuid},
    {L"FirstTransactionDate", &Self::m_firstTransactionDate},
    {L"LastTransactionDate", &Self::m_lastTransactionDate},
    {L"PrinterName", &Self::m_printerName},
    {L"PortName", &Self::m_portName},
    Element(L"PortConfig", &Self::m_portConfig).AsMarkup().Until(currentForm),
    Element(L"IsSecurePrint", &Self::m_isSecurePrint).Since(securePrintVersion).WhenMissing(Missing::Kept),
    {L"ShareName", &Self::m_shareName},
    {L"ServerName", &Self::m_serverName},
    Element(L"ServerShareName", &Self::m_serverShareName).Until(currentForm),
    {L"Location", &Self::m_location},
    {L"Comments", &Self::m_comments},
    Element(L"Attributes", &Self::m_attributes).Since(currentForm).WhenMissing(Missing::Kept),
    Element(L"ColorCapable", &Self::m_colorCapable).Since(colorCapableVersion).WhenMissing(Missing::Kept),
    Element(L"TrackerVersion", &Self::m_trackerVersion).Since(trackerVersion),
    Element(L"BuildNumber", &Self::m_buildNumber)
        .Since(currentForm)
        .Until(trackerVersion)
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
    Element(L"PrintProcessorFileName", &Self::m_printProcessorFileName).Until(currentForm),
    Element(L"PrintProcessorFileDescription", &Self::m_printProcessorFileDescription).Until(currentForm),
    Element(L"PrintProcessorCompanyName", &Self::m_printProcessorCompanyName).Until(currentForm),
    Element(L"PrintProcessorFileVersion", &Self::m_printProcessorFileVersion).Until(currentForm),
    Element(L"PrintProviderName", &Self::m_printProviderName).Until(currentForm),
    Element(L"PrintProviderFileName", &Self::m_printProviderFileName).Until(currentForm),
    Element(L"PrintProviderFileDescription", &Self::m_printProviderFileDescription).Until(currentForm),
    Element(L"PrintProviderCompanyName", &Self::m_printProviderCompanyName).Until(currentForm),
    Element(L"PrintProviderFileVersion", &Self::m_printProviderFileVersion).Until(currentForm),
    Element(L"PortIpAddress", &Self::m_portIpAddress).Until(currentForm),
    Element(L"PortHostName", &Self::m_portHostName).Until(currentForm),
    Element(L"PortQueueName", &Self::m_portQueueName).Until(currentForm),
    Element(L"ServerIpAddress", &Self::m_serverIpAddress).Until(currentForm),
    Element(L"PrinterInfo", &Self::m_printerInfo).AsMarkup().Since(currentForm),
    Element(L"Destination", &Self::m_destination).AsMarkup().Since(currentForm),
};

bool CLogicalPrinterImpl::IsOlderForm() const noexcept {
    return m_version < currentForm;
}

QxXmlWriter CLogicalPrinterImpl::WriteXml() {
    NormalizeTransactionDates();
    QxXmlWriter writer;
    writer.BeginRecord(L"LogicalPrinter", QX_XML_NAMESPACE_BASE L"/OutputManagement/LogicalPrinter",
                       m_version);
    WriteElements(writer, m_version, *this, s_elements);
    writer.EndTag(L"LogicalPrinter");
    return writer;
}

void CLogicalPrinterImpl::ReadVersion(const QxXmlParser& parser) {
    QxString text;
    m_version = parser.FindAttribute(L"Version", text) ? QxVersion(text) : assumedVersion;
    m_version.CheckValid();
}

void CLogicalPrinterImpl::ReadXml(QxXmlParser& parser) {
    ChildReader children(parser);
    ReadElements(parser, children, m_version, *this, s_elements);
    NormalizeTransactionDates();
}
