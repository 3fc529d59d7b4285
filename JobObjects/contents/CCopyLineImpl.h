#pragma once

#include "CCopyLine.h"
#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/Record.h"

/// The creatable copy line: one CCopyLine behind its interface.
class CCopyLineImpl : public Record<ICopyLine, IID_ICopyLine> {
public:
    static constexpr const wchar_t* ConstructionSource = METHOD_SOURCE(CCopyLineImpl, CCopyLineImpl);

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    WRAPPED_TEXT_PROPERTY(CCopyLineImpl, PaperSize, m_line)
    WRAPPED_TEXT_PROPERTY(CCopyLineImpl, PaperDimensions, m_line)
    WRAPPED_TEXT_PROPERTY(CCopyLineImpl, Attributes, m_line)
    WRAPPED_NUMBER_PROPERTY(Sheets, m_line)
    WRAPPED_NUMBER_PROPERTY(PagesBW, m_line)
    WRAPPED_NUMBER_PROPERTY(PagesColor, m_line)
    WRAPPED_NUMBER_PROPERTY(PagesBlank, m_line)
    DERIVED_PROPERTY(CCopyLineImpl, PagesTotal, LONG, m_line.PagesTotal())
    DERIVED_PROPERTY(CCopyLineImpl, IsColor, VARIANT_BOOL, m_line.IsColor())
    DERIVED_PROPERTY(CCopyLineImpl, IsDuplex, VARIANT_BOOL, m_line.IsDuplex())
    DERIVED_PROPERTY(CCopyLineImpl, DBPaperSize, LONG, m_line.DBPaperSize())
    DERIVED_PROPERTY(CCopyLineImpl, DBAttributes, LONG, m_line.DBAttributes())

private:
    CCopyLine m_line;
};
