#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/Record.h"
#include "common/QxXmlParser.h"

/// How the print system described one job: page counts of the spooler, the DEVMODE fields and the print
/// processor's page layout. Stored values only.
class CWindowsPrintInfoImpl : public Record<IWindowsPrintInfo, IID_IWindowsPrintInfo> {
public:
    static constexpr const wchar_t* ConstructionSource =
        METHOD_SOURCE(CWindowsPrintInfoImpl, CWindowsPrintInfoImpl);

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;

    MINIMUM_NUMBER_PROPERTY(JobInfoPages, m_jobInfoPages, 0)
    MINIMUM_NUMBER_PROPERTY(JobInfoOriginals, m_jobInfoOriginals, 0)
    MINIMUM_NUMBER_PROPERTY(DevModeFields, m_devModeFields, 0)
    NUMBER_PROPERTY(DevModeOrientation, m_devModeOrientation)
    NUMBER_PROPERTY(DevModePaperSize, m_devModePaperSize)
    NUMBER_PROPERTY(DevModePaperLength, m_devModePaperLength)
    NUMBER_PROPERTY(DevModePaperWidth, m_devModePaperWidth)
    NUMBER_PROPERTY(DevModeScale, m_devModeScale)
    NUMBER_PROPERTY(DevModeCopies, m_devModeCopies)
    NUMBER_PROPERTY(DevModeDefaultSource, m_devModeDefaultSource)
    NUMBER_PROPERTY(DevModePrintQuality, m_devModePrintQuality)
    NUMBER_PROPERTY(DevModeColor, m_devModeColor)
    NUMBER_PROPERTY(DevModeDuplex, m_devModeDuplex)
    NUMBER_PROPERTY(DevModeTumble, m_devModeTumble)
    NUMBER_PROPERTY(DevModeXResolution, m_devModeXResolution)
    NUMBER_PROPERTY(DevModeYResolution, m_devModeYResolution)
    NUMBER_PROPERTY(DevModeTTOption, m_devModeTTOption)
    NUMBER_PROPERTY(DevModeCollate, m_devModeCollate)
    TEXT_PROPERTY(CWindowsPrintInfoImpl, DevModeFormName, m_devModeFormName)
    NUMBER_PROPERTY(DevModeMediaType, m_devModeMediaType)
    MINIMUM_NUMBER_PROPERTY(AttributeInfoPagesPerSide, m_attributeInfoPagesPerSide, 1)
    NUMBER_PROPERTY(AttributeInfoPageOrderFlags, m_attributeInfoPageOrderFlags)

    HRESULT STDMETHODCALLTYPE get_IsDuplex(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_IsColor(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_IsBooklet(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_JobInfoCopies(LONG* pVal) override;

private:
    struct Element;
    static const Element s_elements[];

    QxXmlWriter WriteXml() const;
    void ReadElements(QxXmlParser& parser);
    std::int32_t Copies() const noexcept;

    std::int32_t m_jobInfoPages = 0;
    std::int32_t m_jobInfoOriginals = 0;
    std::int32_t m_devModeFields = 0;
    std::int32_t m_devModeOrientation = 0;
    std::int32_t m_devModePaperSize = 0;
    std::int32_t m_devModePaperLength = 0;
    std::int32_t m_devModePaperWidth = 0;
    std::int32_t m_devModeScale = 0;
    std::int32_t m_devModeCopies = 0;
    std::int32_t m_devModeDefaultSource = 0;
    std::int32_t m_devModePrintQuality = 0;
    std::int32_t m_devModeColor = 0;
    std::int32_t m_devModeDuplex = 0;
    std::int32_t m_devModeTumble = 0;
    std::int32_t m_devModeXResolution = 0;
    std::int32_t m_devModeYResolution = 0;
    std::int32_t m_devModeTTOption = 0;
    std::int32_t m_devModeCollate = 0;
    QxString m_devModeFormName;
    std::int32_t m_devModeMediaType = 0;
    std::int32_t m_attributeInfoPagesPerSide = 1;
    std::int32_t m_attributeInfoPageOrderFlags = 0;
};
