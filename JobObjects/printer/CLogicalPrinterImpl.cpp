#include "CLogicalPrinterImpl.h"

#include "common/Clock.h"
#include "common/xml/QxXmlWriter.h"

HRESULT CLogicalPrinterImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, IsOlderForm() ? METHOD_SOURCE(get_Xml35) : METHOD_SOURCE(get_Xml),
                    [&] { return WriteXml(); });
}

HRESULT CLogicalPrinterImpl::put_Xml(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_Xml), [&] {
        QxXmlParser parser;
        RecordReading::OpenRoot(parser, BstrView(newVal), L"LogicalPrinter");
        ReadVersion(parser);
        if (!IsOlderForm()) {
            ReadXml(parser);
            return S_OK;
        }
        return RunMethod(METHOD_SOURCE(put_Xml35), [&] { ReadXml(parser); });
    });
}

HRESULT CLogicalPrinterImpl::get_DriverInfoXml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_DriverInfoXml), [&] {
        QxXmlWriter writer(512);
        writer.OpenStartTag(L"DriverInfo");
        writer.CloseStartTag();
        writer.Element(L"DriverName", m_driverName);
        writer.Element(L"DriverFileName", m_driverFileName);
        writer.Element(L"DriverDataFileName", m_driverDataFileName);
        writer.Element(L"DriverFileDescription", m_driverFileDescription);
        writer.Element(L"DriverCompanyName", m_driverCompanyName);
        writer.Element(L"DriverFileVersion", m_driverFileVersion);
        writer.EndTag(L"DriverInfo");
        return writer;
    });
}

HRESULT CLogicalPrinterImpl::get_Destination(BSTR* pVal) {
    return GetText(pVal, m_destination, METHOD_SOURCE(get_Destination));
}

HRESULT CLogicalPrinterImpl::put_Destination(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_Destination), [&] {
        const std::wstring_view text = BstrView(newVal);
        QxXmlParser parser;
        if (!text.empty() && !parser.SetDocument(text))
            throw QxException(L"Destination element is not well formed.");
        m_destination = QxString(text);
    });
}

void CLogicalPrinterImpl::NormalizeTransactionDates() noexcept {
    if (m_firstTransactionDate.IsUnset() && m_lastTransactionDate.IsUnset()) {
        m_firstTransactionDate = Clock::LocalNow();
        m_lastTransactionDate = m_firstTransactionDate;
    }
    if (m_firstTransactionDate.IsUnset() && m_lastTransactionDate.IsAfter(QxDateTime()))
        m_firstTransactionDate = m_lastTransactionDate;
    if (m_firstTransactionDate.IsAfter(m_lastTransactionDate))
        m_lastTransactionDate = m_firstTransactionDate;
}
