#include "CJobContentsImpl.h"

#include "JobObjects/frame/ChildRecord.h"
#include "common/xml/QxXmlWriter.h"

HRESULT CJobContentsImpl::get_Xml(BSTR* pVal) {
    return GetValue(pVal, METHOD_SOURCE(get_Xml), [&] {
        QxXmlWriter writer(2048);
        m_contents.WriteXml(writer);
        return writer;
    });
}

HRESULT CJobContentsImpl::put_Xml(BSTR newVal) {
    return RunMethod(PutXmlSource, [&] {
        if (!m_contents.put_Xml(BstrView(newVal)))
            ThrowInvalidXmlFragment(PutXmlSource);
    });
}

HRESULT CJobContentsImpl::WriteInto(QxXmlWriter& writer) noexcept {
    return RunMethod(METHOD_SOURCE(get_Xml), [&] { m_contents.WriteXml(writer); });
}

HRESULT CJobContentsImpl::ReadFrom(QxXmlParser& parser) noexcept {
    return RunMethod(PutXmlSource, [&] {
        if (!m_contents.ReadXml(parser))
            ThrowInvalidXmlFragment(PutXmlSource);
    });
}

HRESULT CJobContentsImpl::get_JobCopyLines(ICopyLines** pVal) {
    if (!pVal)
        return FailWithoutInfo(E_POINTER);
    *pVal = nullptr;
    return RunMethod(METHOD_SOURCE(get_JobCopyLines), [&] {
        QxXmlWriter writer(1024);
        m_contents.JobCopyLines().WriteXml(writer);
        *pVal = CreateFilledChild<ICopyLines>(writer.Text()).Detach();
    });
}

HRESULT CJobContentsImpl::get_GenerateDefaultPageAttributes(VARIANT_BOOL* pVal) {
    return GetField(pVal, m_contents.GenerateDefaultPageAttributes());
}

HRESULT CJobContentsImpl::put_GenerateDefaultPageAttributes(VARIANT_BOOL newVal) {
    m_contents.SetGenerateDefaultPageAttributes(newVal != VARIANT_FALSE);
    return S_OK;
}

HRESULT CJobContentsImpl::GenerateContentsFromPageCounterInfo(BSTR attributes, LONG jobOriginals,
                                                              LONG jobCopies, LONG jobPages, LONG jobSheets) {
    return RunMethod(GenerateSource, [&] {
        m_contents.GenerateContentsFromPageCounterInfo(BstrView(attributes), jobOriginals, jobCopies,
                                                       jobPages, jobSheets);
    });
}

HRESULT CJobContentsImpl::GenerateGeneralContentsFromPageCounterInfo(BSTR attributes, LONG jobOriginals,
                                                                     LONG jobCopies, VARIANT_BOOL stripColor,
                                                                     BSTR* pageAttributes) {
    return GetValue(pageAttributes, GenerateSource, [&] {
        return m_contents.GenerateGeneralContentsFromPageCounterInfo(BstrView(attributes), jobOriginals,
                                                                     jobCopies, stripColor != VARIANT_FALSE);
    });
}

HRESULT CJobContentsImpl::GenerateCopyLineFromPageCounterInfo(BSTR attributes, LONG pagesBW, LONG pagesColor,
                                                              LONG pagesBlank, LONG sheets) {
    return RunMethod(METHOD_SOURCE(GenerateCopyLineFromPageCounterInfo), [&] {
        m_contents.GenerateCopyLineFromPageCounterInfo(BstrView(attributes), pagesBW, pagesColor, pagesBlank,
                                                       sheets);
    });
}

HRESULT CJobContentsImpl::GenerateContentsFromDBInfo(BSTR copyLines, LONG jobOriginals, LONG jobCopies,
                                                     LONG jobPdlId, LONG jobFinishingId) {
    return RunMethod(GenerateSource, [&] {
        m_contents.GenerateContentsFromDBInfo(BstrView(copyLines), jobOriginals, jobCopies, jobPdlId,
                                              jobFinishingId);
    });
}

HRESULT CJobContentsImpl::MatchAttributes(BSTR attributes, BSTR* paperSize, BSTR* paperDimensions,
                                          BSTR* jobPdl, BSTR* jobFinishing, BSTR* pageAttributes,
                                          VARIANT_BOOL* isColor, BSTR* unmatchedAttributes) {
    BSTR* const texts[] = {paperSize,    paperDimensions, jobPdl,
                           jobFinishing, pageAttributes,  unmatchedAttributes};
    for (BSTR* text : texts)
        if (!text)
            return FailWithoutInfo(E_POINTER);
    if (!isColor)
        return FailWithoutInfo(E_POINTER);
    for (BSTR* text : texts)
        *text = nullptr;
    *isColor = VARIANT_FALSE;

    return RunMethod(GenerateSource, [&] {
        const CJobContents::MatchedAttributes matched = m_contents.MatchAttributes(BstrView(attributes));
        UniqueBstr results[] = {
            UniqueBstr(matched.paperSize),      UniqueBstr(matched.paperDimensions),
            UniqueBstr(matched.jobPdl),         UniqueBstr(matched.jobFinishing),
            UniqueBstr(matched.pageAttributes), UniqueBstr(matched.unmatchedAttributes),
        };
        for (std::size_t i = 0; i < std::size(results); ++i)
            *texts[i] = results[i].Detach();
        *isColor = ToAutomation(matched.isColor);
    });
}

HRESULT CJobContentsImpl::DoAttributesMatch(BSTR attributes, BSTR* unmatchedAttributes,
                                            VARIANT_BOOL* attributesMatch) {
    if (!unmatchedAttributes || !attributesMatch)
        return FailWithoutInfo(E_POINTER);
    *unmatchedAttributes = nullptr;
    *attributesMatch = VARIANT_FALSE;
    return RunMethod(METHOD_SOURCE(DoAttributesMatch), [&] {
        const CJobContents::MatchedAttributes matched = m_contents.MatchAttributes(BstrView(attributes));
        *unmatchedAttributes = NewBstr(matched.unmatchedAttributes);
        *attributesMatch = ToAutomation(matched.unmatchedAttributes.empty());
    });
}
