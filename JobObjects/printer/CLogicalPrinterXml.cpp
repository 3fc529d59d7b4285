// The versioned XML form of a logical printer: one table that both directions and both forms go by.

#include "CLogicalPrinterImpl.h"

#include "common/QxXmlWriter.h"
#include "common/XmlNamespace.h"

namespace {

constexpr QxVersion assumedVersion(3, 0); // of a document that tells none
constexpr QxVersion currentForm(3, 6);    // below it the older form
constexpr QxVersion colorCapableVersion(4, 0);
constexpr QxVersion trackerVersion(6, 0);
constexpr QxVersion securePrintVersion(7, 0);
constexpr QxVersion always;  // an undefined version sorts below every other
constexpr QxVersion forGood; // as an end: none

} // namespace

/// One element, in the order of the document, with the versions that have it: from since, below until. A date
/// that is missing is the zero date, a missing text is empty, a missing number or flag leaves the field
/// alone. Markup stands in the document as it is and is taken from it whole, with its own tags.
struct CLogicalPrinterImpl::Element {
    enum class Kind { Text, Markup, Number, Flag, Date };
    using Self = CLogicalPrinterImpl;

    constexpr Element(XmlName n, QxString Self::*field, QxVersion from = always, QxVersion below = forGood,
                      Kind k = Kind::Text)
        : name(n), since(from), until(below), kind(k), text(field) {}
    constexpr Element(XmlName n, std::int32_t Self::*field, QxVersion from, QxVersion below = forGood)
        : name(n), since(from), until(below), kind(Kind::Number), number(field) {}
    constexpr Element(XmlName n, bool Self::*field, QxVersion from)
        : name(n), since(from), until(forGood), kind(Kind::Flag), flag(field) {}
    constexpr Element(XmlName n, QxDateTime Self::*field)
        : name(n), since(always), until(forGood), kind(Kind::Date), date(field) {}

    bool BelongsTo(const QxVersion& version) const noexcept {
        return version >= since && (!until.IsValid() || version < until);
    }

    XmlName name;
    QxVersion since;
    QxVersion until;
    Kind kind;
    QxString Self::*text = nullptr;
    std::int32_t Self::*number = nullptr;
    bool Self::*flag = nullptr;
    QxDateTime Self::*date = nullptr;
};

constexpr CLogicalPrinterImpl::Element CLogicalPrinterImpl::s_elements[] = {
    {L"LogicalPrinterGuid", &Element::Self::m_logicalPrinterGuid},
    {L"CustomerCode", &Element::Self::m_customerCode},
    {L"MachineGuid", &Element::Self::m_machineGuid},
    {L"FirstTransactionDate", &Element::Self::m_firstTransactionDate},
    {L"LastTransactionDate", &Element::Self::m_lastTransactionDate},
    {L"PrinterName", &Element::Self::m_printerName},
    {L"PortName", &Element::Self::m_portName},
    {L"PortConfig", &Element::Self::m_portConfig, always, currentForm, Element::Kind::Markup},
    {L"IsSecurePrint", &Element::Self::m_isSecurePrint, securePrintVersion},
    {L"ShareName", &Element::Self::m_shareName},
    {L"ServerName", &Element::Self::m_serverName},
    {L"ServerShareName", &Element::Self::m_serverShareName, always, currentForm},
    {L"Location", &Element::Self::m_location},
    {L"Comments", &Element::Self::m_comments},
    {L"Attributes", &Element::Self::m_attributes, currentForm},
    {L"ColorCapable", &Element::Self::m_colorCapable, colorCapableVersion},
    {L"TrackerVersion", &Element::Self::m_trackerVersion, trackerVersion},
    {L"BuildNumber", &Element::Self::m_buildNumber, currentForm, trackerVersion},
    {L"DriverName", &Element::Self::m_driverName},
    {L"DriverFileName", &Element::Self::m_driverFileName},
    {L"DriverDataFileName", &Element::Self::m_driverDataFileName},
    {L"DriverFileDescription", &Element::Self::m_driverFileDescription},
    {L"DriverCompanyName", &Element::Self::m_driverCompanyName},
    {L"DriverFileVersion", &Element::Self::m_driverFileVersion},
    {L"PrintMonitorName", &Element::Self::m_printMonitorName},
    {L"PrintMonitorFileName", &Element::Self::m_printMonitorFileName},
    {L"PrintMonitorFileDescription", &Element::Self::m_printMonitorFileDescription},
    {L"PrintMonitorCompanyName", &Element::Self::m_printMonitorCompanyName},
    {L"PrintMonitorFileVersion", &Element::Self::m_printMonitorFileVersion},
    {L"PrintProcessorName", &Element::Self::m_printProcessorName},
    {L"PrintProcessorFileName", &Element::Self::m_printProcessorFileName, always, currentForm},
    {L"PrintProcessorFileDescription", &Element::Self::m_printProcessorFileDescription, always, currentForm},
    {L"PrintProcessorCompanyName", &Element::Self::m_printProcessorCompanyName, always, currentForm},
    {L"PrintProcessorFileVersion", &Element::Self::m_printProcessorFileVersion, always, currentForm},
    {L"PrintProviderName", &Element::Self::m_printProviderName, always, currentForm},
    {L"PrintProviderFileName", &Element::Self::m_printProviderFileName, always, currentForm},
    {L"PrintProviderFileDescription", &Element::Self::m_printProviderFileDescription, always, currentForm},
    {L"PrintProviderCompanyName", &Element::Self::m_printProviderCompanyName, always, currentForm},
    {L"PrintProviderFileVersion", &Element::Self::m_printProviderFileVersion, always, currentForm},
    {L"PortIpAddress", &Element::Self::m_portIpAddress, always, currentForm},
    {L"PortHostName", &Element::Self::m_portHostName, always, currentForm},
    {L"PortQueueName", &Element::Self::m_portQueueName, always, currentForm},
    {L"ServerIpAddress", &Element::Self::m_serverIpAddress, always, currentForm},
    {L"PrinterInfo", &Element::Self::m_printerInfo, currentForm, forGood, Element::Kind::Markup},
    {L"Destination", &Element::Self::m_destination, currentForm, forGood, Element::Kind::Markup},
};

bool CLogicalPrinterImpl::IsOlderForm() const noexcept {
    return m_version < currentForm;
}

QxXmlWriter CLogicalPrinterImpl::WriteXml() {
    NormalizeTransactionDates();
    QxXmlWriter writer;
    writer.OpenStartTag(L"LogicalPrinter");
    writer.Attribute(L"xmlns", QX_XML_NAMESPACE_BASE L"/OutputManagement/LogicalPrinter");
    writer.Attribute(L"Version", m_version.AsString());
    writer.CloseStartTag();
    for (const Element& element : s_elements) {
        if (!element.BelongsTo(m_version))
            continue;
        switch (element.kind) {
        case Element::Kind::Text:
            writer.Element(element.name, this->*element.text);
            break;
        case Element::Kind::Markup:
            writer.Raw(this->*element.text);
            break;
        case Element::Kind::Number:
            writer.Element(element.name, this->*element.number);
            break;
        case Element::Kind::Flag:
            writer.Element(element.name, this->*element.flag);
            break;
        case Element::Kind::Date:
            writer.Element(element.name, (this->*element.date).Format());
            break;
        }
    }
    writer.EndTag(L"LogicalPrinter");
    return writer;
}

void CLogicalPrinterImpl::ReadVersion(const QxXmlParser& parser) {
    QxString text;
    m_version = parser.FindAttribute(L"Version", text) ? QxVersion(text) : assumedVersion;
    m_version.CheckValid();
}

void CLogicalPrinterImpl::ReadElements(QxXmlParser& parser) {
    ChildReader children(parser);
    for (const Element& element : s_elements)
        if (element.BelongsTo(m_version))
            ReadElement(parser, children, element);
    NormalizeTransactionDates();
}

void CLogicalPrinterImpl::ReadElement(const QxXmlParser& parser, ChildReader& children,
                                      const Element& element) {
    switch (element.kind) {
    case Element::Kind::Text:
        this->*element.text = children.Text(element.name);
        break;
    case Element::Kind::Markup:
        this->*element.text =
            children.Find(element.name) ? QxString(parser.GetChildSubDocument()) : QxString();
        break;
    case Element::Kind::Number:
        if (children.Find(element.name))
            this->*element.number = parser.GetChildNumber();
        break;
    case Element::Kind::Flag:
        if (children.Find(element.name))
            this->*element.flag = parser.GetChildFlag();
        break;
    case Element::Kind::Date:
        this->*element.date = children.DateTime(element.name);
        break;
    }
}
