#pragma once

#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/ElementTable.h"
#include "JobObjects/frame/HeldRecord.h"
#include "common/xml/QxXmlParser.h"

/// A job as the print system describes it: the spooler's page counts, DEVMODE fields and the print
/// processor's page layout.
class CWindowsPrintInfoImpl : public HeldRecord<IWindowsPrintInfo> {
public:
    using Self = CWindowsPrintInfoImpl;
    static constexpr NameLiteral ClassName{L"CWindowsPrintInfoImpl"};

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;

    MINIMUM_NUMBER_PROPERTY(get_JobInfoPages, put_JobInfoPages, m_jobInfoPages, 0)
    MINIMUM_NUMBER_PROPERTY(get_JobInfoOriginals, put_JobInfoOriginals, m_jobInfoOriginals, 0)
    MINIMUM_NUMBER_PROPERTY(get_DevModeFields, put_DevModeFields, m_devModeFields, 0)
    NUMBER_PROPERTY(get_DevModeOrientation, put_DevModeOrientation, m_devModeOrientation)
    NUMBER_PROPERTY(get_DevModePaperSize, put_DevModePaperSize, m_devModePaperSize)
    NUMBER_PROPERTY(get_DevModePaperLength, put_DevModePaperLength, m_devModePaperLength)
    NUMBER_PROPERTY(get_DevModePaperWidth, put_DevModePaperWidth, m_devModePaperWidth)
    NUMBER_PROPERTY(get_DevModeScale, put_DevModeScale, m_devModeScale)
    NUMBER_PROPERTY(get_DevModeCopies, put_DevModeCopies, m_devModeCopies)
    NUMBER_PROPERTY(get_DevModeDefaultSource, put_DevModeDefaultSource, m_devModeDefaultSource)
    NUMBER_PROPERTY(get_DevModePrintQuality, put_DevModePrintQuality, m_devModePrintQuality)
    NUMBER_PROPERTY(get_DevModeColor, put_DevModeColor, m_devModeColor)
    NUMBER_PROPERTY(get_DevModeDuplex, put_DevModeDuplex, m_devModeDuplex)
    NUMBER_PROPERTY(get_DevModeTumble, put_DevModeTumble, m_devModeTumble)
    NUMBER_PROPERTY(get_DevModeXResolution, put_DevModeXResolution, m_devModeXResolution)
    NUMBER_PROPERTY(get_DevModeYResolution, put_DevModeYResolution, m_devModeYResolution)
    NUMBER_PROPERTY(get_DevModeTTOption, put_DevModeTTOption, m_devModeTTOption)
    NUMBER_PROPERTY(get_DevModeCollate, put_DevModeCollate, m_devModeCollate)
    TEXT_PROPERTY(get_DevModeFormName, put_DevModeFormName, m_devModeFormName)
    NUMBER_PROPERTY(get_DevModeMediaType, put_DevModeMediaType, m_devModeMediaType)
    MINIMUM_NUMBER_PROPERTY(get_AttributeInfoPagesPerSide, put_AttributeInfoPagesPerSide,
                            m_attributeInfoPagesPerSide, 1)
    NUMBER_PROPERTY(get_AttributeInfoPageOrderFlags, put_AttributeInfoPageOrderFlags,
                    m_attributeInfoPageOrderFlags)

    HRESULT STDMETHODCALLTYPE get_IsDuplex(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_IsColor(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_IsBooklet(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE get_JobInfoCopies(LONG* pVal) override;

    HRESULT WriteInto(QxXmlWriter& writer) noexcept override;
    HRESULT ReadFrom(QxXmlParser& parser) noexcept override;

private:
    static constexpr QxVersion AnyVersion{}; // the form has no versions
    static const Element<Self> Elements[];

    void WriteXml(QxXmlWriter& writer) const;
    void ReadXml(QxXmlParser& parser);
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
