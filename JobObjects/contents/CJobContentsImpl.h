#pragma once

#include "CJobContents.h"
#include "JobObjects/frame/Accessors.h"
#include "JobObjects/frame/HeldRecord.h"

/// COM class JobContents: wraps a CJobContents. JobCopyLines returns a copy.
class CJobContentsImpl : public HeldRecord<IJobContents> {
public:
    using Self = CJobContentsImpl;
    static constexpr NameLiteral ClassName{L"CJobContentsImpl"};

    HRESULT STDMETHODCALLTYPE get_Xml(BSTR* pVal) override;
    HRESULT STDMETHODCALLTYPE put_Xml(BSTR newVal) override;
    HRESULT STDMETHODCALLTYPE get_JobCopyLines(ICopyLines** pVal) override;
    WRAPPED_NUMBER_PROPERTY(get_JobOriginals, put_JobOriginals, m_contents.JobOriginals(),
                            m_contents.SetJobOriginals)
    WRAPPED_NUMBER_PROPERTY(get_JobCopies, put_JobCopies, m_contents.JobCopies(), m_contents.SetJobCopies)
    WRAPPED_TEXT_PROPERTY(get_JobPdl, put_JobPdl, m_contents.JobPdl(), m_contents.SetJobPdl)
    WRAPPED_TEXT_PROPERTY(get_JobFinishing, put_JobFinishing, m_contents.JobFinishing(),
                          m_contents.SetJobFinishing)
    DERIVED_PROPERTY(get_DBPdl, LONG, m_contents.DBPdl())
    DERIVED_PROPERTY(get_DBFinishing, LONG, m_contents.DBFinishing())
    DERIVED_PROPERTY(get_DBCopyLines, BSTR, m_contents.DBCopyLines())
    DERIVED_PROPERTY(get_IsPdlEMF, VARIANT_BOOL, m_contents.IsPdlEMF())
    DERIVED_PROPERTY(get_Version, BSTR, m_contents.Version().AsString())
    DERIVED_PROPERTY(get_TotalPages, LONG, m_contents.JobCopyLines().TotalPages())
    DERIVED_PROPERTY(get_TotalPagesBW, LONG, m_contents.JobCopyLines().TotalPagesBW())
    DERIVED_PROPERTY(get_TotalPagesColor, LONG, m_contents.JobCopyLines().TotalPagesColor())
    DERIVED_PROPERTY(get_ContainsDuplex, VARIANT_BOOL, m_contents.JobCopyLines().ContainsDuplex())
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

    HRESULT WriteInto(QxXmlWriter& writer) noexcept override;
    HRESULT ReadFrom(QxXmlParser& parser) noexcept override;

private:
    static constexpr const wchar_t* PutXmlSource = METHOD_SOURCE(put_Xml);
    /// Several methods report under this name: log readers match it.
    static constexpr const wchar_t* GenerateSource =
        METHOD_SOURCE(GenerateGeneralContentsFromPageCounterInfo);

    CJobContents m_contents;
};
