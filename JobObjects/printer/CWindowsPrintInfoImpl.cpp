#include "CWindowsPrintInfoImpl.h"

#include "common/xml/QxXmlWriter.h"
#include "common/xml/RecordReading.h"
#include "common/log/QxLogger.h"

#include <limits>

constexpr Element<CWindowsPrintInfoImpl> CWindowsPrintInfoImpl::Elements[] = {
    Element(L"JobInfoPages", &Self::m_jobInfoPages).AtLeast(0),
    Element(L"JobInfoOriginals", &Self::m_jobInfoOriginals).AtLeast(0),
    Element(L"DevModeFields", &Self::m_devModeFields).AtLeast(0),
    {L"DevModeOrientation", &Self::m_devModeOrientation},
    {L"DevModePaperSize", &Self::m_devModePaperSize},
    {L"DevModePaperLength", &Self::m_devModePaperLength},
    {L"DevModePaperWidth", &Self::m_devModePaperWidth},
    {L"DevModeScale", &Self::m_devModeScale},
    {L"DevModeCopies", &Self::m_devModeCopies},
    {L"DevModeDefaultSource", &Self::m_devModeDefaultSource},
    {L"DevModePrintQuality", &Self::m_devModePrintQuality},
    {L"DevModeColor", &Self::m_devModeColor},
    {L"DevModeDuplex", &Self::m_devModeDuplex},
    {L"DevModeTumble", &Self::m_devModeTumble},
    {L"DevModeXResolution", &Self::m_devModeXResolution},
    {L"DevModeYResolution", &Self::m_devModeYResolution},
    {L"DevModeTtOption", &Self::m_devModeTTOption}, // sic: differs from the property
    {L"DevModeCollate", &Self::m_devModeCollate},
    {L"DevModeFormName", &Self::m_devModeFormName},
    {L"DevModeMediaType", &Self::m_devModeMediaType},
    Element(L"AttributeInfoPagesPerSide", &Self::m_attributeInfoPagesPerSide).AtLeast(1),
    {L"AttributeInfoPageOrderFlags", &Self::m_attributeInfoPageOrderFlags},
};

HRESULT CWindowsPrintInfoImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_Xml), [&] {
        QxXmlWriter writer(1536);
        WriteXml(writer);
        return writer;
    });
}

HRESULT CWindowsPrintInfoImpl::put_Xml(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(put_Xml), [&]() -> HRESULT {
        QxXmlParser parser;
        parser.SetDocument(BstrView(newVal));
        const bool found = parser.FindElement(L"WindowsPrintInfo", true);
        if (!found)
            parser.SetDocument({}); // without elements, the read resets the record
        ReadXml(parser);
        if (found)
            return S_OK;
        // On purpose two log lines and no error information.
        LogError(L"[CWindowsPrintInfo::put_Xml] Invalid Xml fragment");
        LogError(L"[CWindowsPrintInfoImpl::put_Xml] Invalid Xml fragment");
        return FailWithoutInfo(E_FAIL);
    });
}

HRESULT CWindowsPrintInfoImpl::WriteInto(QxXmlWriter& writer) noexcept {
    return RunMethod(METHOD_SOURCE(get_Xml), [&] { WriteXml(writer); });
}

HRESULT CWindowsPrintInfoImpl::ReadFrom(QxXmlParser& parser) noexcept {
    return RunMethod(METHOD_SOURCE(put_Xml), [&] { ReadXml(parser); });
}

void CWindowsPrintInfoImpl::WriteXml(QxXmlWriter& writer) const {
    writer.OpenStartTag(L"WindowsPrintInfo");
    writer.CloseStartTag();
    WriteElements(writer, AnyVersion, *this, Elements);
    writer.EndTag(L"WindowsPrintInfo");
}

void CWindowsPrintInfoImpl::ReadXml(QxXmlParser& parser) {
    ChildReader children(parser);
    ReadElements(parser, children, AnyVersion, *this, Elements);
    // Once the originals are known, pages count all copies. In this record's own output both hold already.
    if (m_jobInfoOriginals == 0) {
        m_jobInfoOriginals = m_jobInfoPages;
        const std::int64_t pages = std::int64_t{m_jobInfoPages} * Copies();
        m_jobInfoPages = static_cast<std::int32_t>(
            std::min<std::int64_t>(pages, std::numeric_limits<std::int32_t>::max()));
    }
}

std::int32_t CWindowsPrintInfoImpl::Copies() const noexcept {
    return (m_devModeFields & DM_COPIES) != 0 ? std::max<std::int32_t>(m_devModeCopies, 1) : 1;
}

// Any non-zero value of a selected field counts, even the codes for simplex and monochrome.

HRESULT CWindowsPrintInfoImpl::get_IsDuplex(VARIANT_BOOL* pVal) {
    return GetField(pVal, (m_devModeFields & DM_DUPLEX) != 0 && m_devModeDuplex != 0);
}

HRESULT CWindowsPrintInfoImpl::get_IsColor(VARIANT_BOOL* pVal) {
    return GetField(pVal, (m_devModeFields & DM_COLOR) != 0 && m_devModeColor != 0);
}

HRESULT CWindowsPrintInfoImpl::get_IsBooklet(VARIANT_BOOL* pVal) {
    constexpr std::int32_t bookletPageOrder = 2;
    return GetField(pVal, m_attributeInfoPageOrderFlags == bookletPageOrder);
}

HRESULT CWindowsPrintInfoImpl::get_JobInfoCopies(LONG* pVal) {
    return GetField(pVal, Copies());
}
