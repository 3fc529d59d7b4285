#pragma once

#include "CCopyLine.h"
#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/Record.h"

/// COM class CopyLine: wraps a CCopyLine.
class CCopyLineImpl : public Record<ICopyLine, IID_ICopyLine> {
public:
    using Self = CCopyLineImpl;
    static constexpr NameLiteral ClassName{L"CCopyLineImpl"};

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    WRAPPED_TEXT_PROPERTY(get_PaperSize, put_PaperSize, m_line.PaperSize(), m_line.SetPaperSize)
    WRAPPED_TEXT_PROPERTY(get_PaperDimensions, put_PaperDimensions, m_line.PaperDimensions(),
                          m_line.SetPaperDimensions)
    WRAPPED_TEXT_PROPERTY(get_Attributes, put_Attributes, m_line.Attributes(), m_line.SetAttributes)
    WRAPPED_NUMBER_PROPERTY(get_Sheets, put_Sheets, m_line.Sheets(), m_line.SetSheets)
    WRAPPED_NUMBER_PROPERTY(get_PagesBW, put_PagesBW, m_line.PagesBW(), m_line.SetPagesBW)
    WRAPPED_NUMBER_PROPERTY(get_PagesColor, put_PagesColor, m_line.PagesColor(), m_line.SetPagesColor)
    WRAPPED_NUMBER_PROPERTY(get_PagesBlank, put_PagesBlank, m_line.PagesBlank(), m_line.SetPagesBlank)
    DERIVED_PROPERTY(get_PagesTotal, LONG, m_line.PagesTotal())
    DERIVED_PROPERTY(get_IsColor, VARIANT_BOOL, m_line.IsColor())
    DERIVED_PROPERTY(get_IsDuplex, VARIANT_BOOL, m_line.IsDuplex())
    DERIVED_PROPERTY(get_DBPaperSize, LONG, m_line.DBPaperSize())
    DERIVED_PROPERTY(get_DBAttributes, LONG, m_line.DBAttributes())

private:
    CCopyLine m_line;
};
