#pragma once

#include "CJobContents.h"
#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/Record.h"

/// The creatable job contents: one CJobContents behind its interface. Hands out copies of its copy lines.
class CJobContentsImpl : public Record<IJobContents, IID_IJobContents> {
public:
    static constexpr const wchar_t* ConstructionSource = METHOD_SOURCE(CJobContentsImpl, CJobContentsImpl);

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_JobCopyLines(ICopyLines** pVal) override;
    WRAPPED_NUMBER_PROPERTY(JobOriginals, m_contents)
    WRAPPED_NUMBER_PROPERTY(JobCopies, m_contents)
    WRAPPED_TEXT_PROPERTY(CJobContentsImpl, JobPdl, m_contents)
    WRAPPED_TEXT_PROPERTY(CJobContentsImpl, JobFinishing, m_contents)
    DERIVED_PROPERTY(CJobContentsImpl, DBPdl, LONG, m_contents.DBPdl())
    DERIVED_PROPERTY(CJobContentsImpl, DBFinishing, LONG, m_contents.DBFinishing())
    DERIVED_PROPERTY(CJobContentsImpl, DBCopyLines, BSTR, m_contents.DBCopyLines())
    DERIVED_PROPERTY(CJobContentsImpl, IsPdlEMF, VARIANT_BOOL, m_contents.IsPdlEMF())
    DERIVED_PROPERTY(CJobContentsImpl, Version, BSTR, m_contents.Version().AsString())
    DERIVED_PROPERTY(CJobContentsImpl, TotalPages, LONG, m_contents.JobCopyLines().TotalPages())
    DERIVED_PROPERTY(CJobContentsImpl, TotalPagesBW, LONG, m_contents.JobCopyLines().TotalPagesBW())
    DERIVED_PROPERTY(CJobContentsImpl, TotalPagesColor, LONG, m_contents.JobCopyLines().TotalPagesColor())
    DERIVED_PROPERTY(CJobContentsImpl, ContainsDuplex, VARIANT_BOOL,
                     m_contents.JobCopyLines().ContainsDuplex())
    HRESULT STDMETHODCALLTYPE get_GenerateDefaultPageAttributes(VARIANT_BOOL* pVal) override;
    HRESULT STDMETHODCALLTYPE put_GenerateDefaultPageAttributes(VARIANT_BOOL newVal) override;

    HRESULT STDMETHODCALLTYPE GenerateContentsFromPageCounterInfo(BSTR attributes, LONG jobOriginals,
                                                                  LONG jobCopies, LONG jobPages,
                                                                  LONG jobSheets) override;
    HRESULT STDMETHODCALLTYPE GenerateGeneralContentsFromPageCounterInfo(BSTR attributes, LONG jobOriginals,
                                                                         LONG jobCopies,
                                                                         VARIANT_BOOL stripColor,
                                                                         BSTR* pageAttributes) override;
    HRESULT STDMETHODCALLTYPE GenerateCopyLineFromPageCounterInfo(BSTR attributes, LONG pagesBW,
                                                                  LONG pagesColor, LONG pagesBlank,
                                                                  LONG sheets) override;
    HRESULT STDMETHODCALLTYPE GenerateContentsFromDBInfo(BSTR copyLines, LONG jobOriginals, LONG jobCopies,
                                                         LONG jobPdlId, LONG jobFinishingId) override;
    HRESULT STDMETHODCALLTYPE MatchAttributes(BSTR attributes, BSTR* paperSize, BSTR* paperDimensions,
                                              BSTR* jobPdl, BSTR* jobFinishing, BSTR* pageAttributes,
                                              VARIANT_BOOL* isColor, BSTR* unmatchedAttributes) override;
    HRESULT STDMETHODCALLTYPE DoAttributesMatch(BSTR attributes, BSTR* unmatchedAttributes,
                                                VARIANT_BOOL* attributesMatch) override;

private:
    CJobContents m_contents;
};
