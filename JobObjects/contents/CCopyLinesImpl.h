#pragma once

#include "CCopyLines.h"
#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/Record.h"

/// COM class CopyLines: wraps a CCopyLines. Item returns a copy.
class CCopyLinesImpl : public Record<ICopyLines, IID_ICopyLines> {
public:
    using Self = CCopyLinesImpl;
    static constexpr NameLiteral ClassName{L"CCopyLinesImpl"};

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE Item(LONG index, ICopyLine** copyLine) override;
    HRESULT STDMETHODCALLTYPE Clear() override;
    DERIVED_PROPERTY(get_Count, LONG, m_lines.Count())
    DERIVED_PROPERTY(get_TotalPages, LONG, m_lines.TotalPages())
    DERIVED_PROPERTY(get_TotalPagesBW, LONG, m_lines.TotalPagesBW())
    DERIVED_PROPERTY(get_TotalPagesColor, LONG, m_lines.TotalPagesColor())
    DERIVED_PROPERTY(get_ContainsDuplex, VARIANT_BOOL, m_lines.ContainsDuplex())

private:
    CCopyLines m_lines;
};
