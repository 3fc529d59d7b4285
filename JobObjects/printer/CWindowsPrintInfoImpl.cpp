#include "CWindowsPrintInfoImpl.h"

#include "common/QxXmlWriter.h"
#include "common/RecordReading.h"
#include "common/log/QxLogger.h"

#include <limits>

namespace {
constexpr std::int32_t anyNumber = std::numeric_limits<std::int32_t>::min();
}

/// One element of the XML form, which both directions go by: a number with its lowest value, or a text.
struct CWindowsPrintInfoImpl::Element {
    XmlName name;
    std::int32_t CWindowsPrintInfoImpl::*number = nullptr;
    std::int32_t minimum = anyNumber;
    QxString CWindowsPrintInfoImpl::*text = nullptr;
};

const CWindowsPrintInfoImpl::Element CWindowsPrintInfoImpl::s_elements[] = {
    {L"JobInfoPages", &CWindowsPrintInfoImpl::m_jobInfoPages, 0},
    {L"JobInfoOriginals", &CWindowsPrintInfoImpl::m_jobInfoOriginals, 0},
    {L"DevModeFields", &CWindowsPrintInfoImpl::m_devModeFields, 0},
    {L"DevModeOrientation", &CWindowsPrintInfoImpl::m_devModeOrientation},
    {L"DevModePaperSize", &CWindowsPrintInfoImpl::m_devModePaperSize},
    {L"DevModePaperLength", &CWindowsPrintInfoImpl::m_devModePaperLength},
    {L"DevModePaperWidth", &CWindowsPrintInfoImpl::m_devModePaperWidth},
    {L"DevModeScale", &CWindowsPrintInfoImpl::m_devModeScale},
    {L"DevModeCopies", &CWindowsPrintInfoImpl::m_devModeCopies},
    {L"DevModeDefaultSource", &CWindowsPrintInfoImpl::m_devModeDefaultSource},
    {L"DevModePrintQuality", &CWindowsPrintInfoImpl::m_devModePrintQuality},
    {L"DevModeColor", &CWindowsPrintInfoImpl::m_devModeColor},
    {L"DevModeDuplex", &CWindowsPrintInfoImpl::m_devModeDuplex},
    {L"DevModeTumble", &CWindowsPrintInfoImpl::m_devModeTumble},
    {L"DevModeXResolution", &CWindowsPrintInfoImpl::m_devModeXResolution},
    {L"DevModeYResolution", &CWindowsPrintInfoImpl::m_devModeYResolution},
    {L"DevModeTtOption", &CWindowsPrintInfoImpl::m_devModeTTOption}, // the element's own spelling
    {L"DevModeCollate", &CWindowsPrintInfoImpl::m_devModeCollate},
    {L"DevModeFormName", nullptr, anyNumber, &CWindowsPrintInfoImpl::m_devModeFormName},
    {L"DevModeMediaType", &CWindowsPrintInfoImpl::m_devModeMediaType},
    {L"AttributeInfoPagesPerSide", &CWindowsPrintInfoImpl::m_attributeInfoPagesPerSide, 1},
    {L"AttributeInfoPageOrderFlags", &CWindowsPrintInfoImpl::m_attributeInfoPageOrderFlags},
};

HRESULT CWindowsPrintInfoImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(CWindowsPrintInfoImpl, get_Xml), [&] { return WriteXml(); });
}

HRESULT CWindowsPrintInfoImpl::put_Xml(BSTR newVal) {
    return RunMethod(METHOD_SOURCE(CWindowsPrintInfoImpl, put_Xml), [&]() -> HRESULT {
        QxXmlParser parser;
        parser.SetDocument(BstrView(newVal));
        const bool found = parser.FindElement(L"WindowsPrintInfo", true);
        if (!found)
            parser.SetDocument({}); // every element is missing then: the record is reset
        ReadElements(parser);
        if (found)
            return S_OK;
        // Told by the log and the result alone, without error information.
        LogError(L"[CWindowsPrintInfo::put_Xml] Invalid Xml fragment");
        LogError(L"[CWindowsPrintInfoImpl::put_Xml] Invalid Xml fragment");
        return FailWithoutInfo(E_FAIL);
    });
}

QxXmlWriter CWindowsPrintInfoImpl::WriteXml() const {
    QxXmlWriter writer(1536);
    writer.OpenStartTag(L"WindowsPrintInfo");
    writer.CloseStartTag();
    for (const Element& element : s_elements) {
        if (element.text)
            writer.Element(element.name, this->*element.text);
        else
            writer.Element(element.name, this->*element.number);
    }
    writer.EndTag(L"WindowsPrintInfo");
    return writer;
}

void CWindowsPrintInfoImpl::ReadElements(QxXmlParser& parser) {
    ChildReader children(parser);
    for (const Element& element : s_elements) {
        if (element.text)
            this->*element.text = children.Text(element.name);
        else
            this->*element.number = std::max(children.Number(element.name), element.minimum);
    }
    // Pages count all copies once the originals are known; a record's own output already does.
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

// Any value of a selected field counts, the codes for simplex and monochrome included.

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
