#pragma once

#include "CCopyLines.h"

#include "common/text/QxString.h"
#include "common/QxVersion.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <utility>

class ChildReader;
class QxXmlParser;

/// The output of a job: copy lines, originals and copies, page description language and finishing.
class CJobContents {
public:
    /// A page counter's attribute words, sorted by their meaning.
    struct MatchedAttributes {
        QxString paperSize;
        QxString paperDimensions;
        QxString jobPdl;
        QxString jobFinishing;
        QxString pageAttributes;
        QxString unmatchedAttributes;
        bool isColor = false;
    };

    CJobContents();
    CJobContents(const CJobContents&) = delete;
    CJobContents& operator=(const CJobContents&) = delete;

    const CCopyLines& JobCopyLines() const noexcept { return *m_jobCopyLines; }
    CCopyLines& JobCopyLines() noexcept { return *m_jobCopyLines; }

    /// Whether a pair without a word from the page counter gets its default side.
    bool GenerateDefaultPageAttributes() const noexcept { return m_generateDefaultPageAttributes; }
    void SetGenerateDefaultPageAttributes(bool value) noexcept { m_generateDefaultPageAttributes = value; }

    // A negative count is stored as 0.

    std::int32_t JobOriginals() const noexcept { return m_jobOriginals; }
    void SetJobOriginals(std::int32_t value) noexcept { m_jobOriginals = value > 0 ? value : 0; }
    std::int32_t JobCopies() const noexcept { return m_jobCopies; }
    void SetJobCopies(std::int32_t value) noexcept { m_jobCopies = value > 0 ? value : 0; }
    const QxString& JobPdl() const noexcept { return m_jobPdl; }
    void SetJobPdl(QxString value) noexcept { m_jobPdl = std::move(value); }
    const QxString& JobFinishing() const noexcept { return m_jobFinishing; }
    void SetJobFinishing(QxString value) noexcept { m_jobFinishing = std::move(value); }
    const QxVersion& Version() const noexcept { return m_version; }

    /// The catalogue's code of the PDL; the default PDL's for an unknown name.
    std::int32_t DBPdl() const;
    /// The catalogue's mask of the finishing words.
    std::int32_t DBFinishing() const;
    QxString DBCopyLines() const { return m_jobCopyLines->DBText(); }
    /// Whether the PDL's name contains "EMF" anywhere, in exact case.
    bool IsPdlEMF() const noexcept;

    /// Sorts a page counter's attribute words.
    MatchedAttributes MatchAttributes(std::wstring_view attributes) const;

    // Generation from a page counter's report and from database codes. Unknown words and codes are logged and
    // replaced by defaults; they are not errors.

    /// Sets originals and copies (at least 1 each), PDL and finishing, and clears the copy lines. Returns the
    /// job's page attributes; stripColor removes the color words.
    QxString GenerateGeneralContentsFromPageCounterInfo(std::wstring_view attributes,
                                                        std::int32_t jobOriginals, std::int32_t jobCopies,
                                                        bool stripColor);
    /// Adds a copy line of at least one page and one sheet and consolidates.
    void GenerateCopyLineFromPageCounterInfo(std::wstring_view attributes, std::int32_t pagesBW,
                                             std::int32_t pagesColor, std::int32_t pagesBlank,
                                             std::int32_t sheets);
    /// The job as one copy line, all color or all black-and-white.
    void GenerateContentsFromPageCounterInfo(std::wstring_view attributes, std::int32_t jobOriginals,
                                             std::int32_t jobCopies, std::int32_t jobPages,
                                             std::int32_t jobSheets);
    /// Rebuilds the record from database codes. Stores originals and copies unchecked; logs and skips an
    /// invalid copy line.
    void GenerateContentsFromDBInfo(std::wstring_view copyLines, std::int32_t jobOriginals,
                                    std::int32_t jobCopies, std::int32_t jobPdlId,
                                    std::int32_t jobFinishingId);

    /// Reads a "JobContents" element. Logs and returns false if it or its copy lines are missing; without
    /// copy lines, reads everything else.
    bool put_Xml(std::wstring_view xml);
    /// The same for the parser's current element, whose name is not checked.
    bool ReadXml(QxXmlParser& parser);
    void WriteXml(QxXmlWriter& writer) const;

private:
    /// Logs; false.
    static bool Refuse();
    bool ReadCopyLines(QxXmlParser& parser, ChildReader& children);

    std::shared_ptr<CCopyLines> m_jobCopyLines; // never null
    bool m_generateDefaultPageAttributes = true;
    std::int32_t m_jobOriginals = 0;
    std::int32_t m_jobCopies = 0;
    QxString m_jobPdl;
    QxString m_jobFinishing;
    QxVersion m_version{4, 0};
};
