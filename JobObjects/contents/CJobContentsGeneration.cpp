// Job contents from a page counter's attribute words and from database codes.

#include "CJobContents.h"
#include "JobAttributeCatalogue.h"

#include "common/text/Numbers.h"
#include "common/text/Text.h"
#include "common/log/QxLogger.h"

#include <algorithm>
#include <array>
#include <string>

using AttributeText::Words;

namespace {

bool NamesColor(std::wstring_view attributes) noexcept {
    return QxMisc::Contains(attributes, AttributeText::Color);
}

/// The fields of a database copy line, in order.
enum Field { PaperCode, PagesBW, PagesColor, Sheets, AttributeMask, FieldCount };

/// A missing or empty field counts as 0.
std::array<std::uint32_t, FieldCount> ParseFields(std::wstring_view piece) {
    std::array<std::uint32_t, FieldCount> fields{};
    for (std::uint32_t& field : fields) {
        const std::size_t end = piece.find(L',');
        field = QxMisc::ParseUInt32(piece.substr(0, end));
        if (end == std::wstring_view::npos)
            break;
        piece.remove_prefix(end + 1);
    }
    return fields;
}

/// Logs and returns false if the piece is not a valid copy line. One without an attribute bit is invalid:
/// generated lines have at least the default side of a pair.
bool ParseDBCopyLine(std::wstring_view piece, CCopyLine& line) {
    const auto fields = ParseFields(piece);
    JobAttributeCatalogue::Paper paper;
    if (fields[AttributeMask] == 0 || !TheCatalogue().PaperFromDbId(fields[PaperCode], paper)) {
        LogError(L"DB CopyLine string '%ls' is invalid.", std::wstring(piece).c_str());
        return false;
    }
    line.SetPagesBW(static_cast<std::int32_t>(fields[PagesBW]));
    line.SetPagesColor(static_cast<std::int32_t>(fields[PagesColor]));
    line.SetSheets(static_cast<std::int32_t>(fields[Sheets]));
    line.SetPaperSize(std::move(paper.name));
    line.SetPaperDimensions(std::move(paper.dimensions));
    line.SetAttributes(TheCatalogue().AttributeNamesFromMask(fields[AttributeMask]));
    return true;
}

} // namespace

CJobContents::MatchedAttributes CJobContents::MatchAttributes(std::wstring_view attributes) const {
    MatchedAttributes result;
    result.isColor = NamesColor(attributes);
    const std::wstring withoutColor =
        AttributeText::Without(attributes, {AttributeText::BlackAndWhite, AttributeText::Color});
    Words words = AttributeText::Split(withoutColor);
    JobAttributeCatalogue::Paper paper = TheCatalogue().PaperFromAttributeWords(words);
    result.paperSize = std::move(paper.name);
    result.paperDimensions = std::move(paper.dimensions);
    JobAttributeCatalogue::JobOptions options = TheCatalogue().JobOptionsFromAttributeWords(words);
    result.jobPdl = std::move(options.pdl);
    result.jobFinishing = std::move(options.finishing);
    result.pageAttributes = TheCatalogue().NormalizePageAttributes(words, m_generateDefaultPageAttributes);
    result.unmatchedAttributes = AttributeText::Join(words);
    return result;
}

QxString CJobContents::GenerateGeneralContentsFromPageCounterInfo(std::wstring_view attributes,
                                                                  std::int32_t jobOriginals,
                                                                  std::int32_t jobCopies, bool stripColor) {
    SetJobOriginals(std::max(jobOriginals, 1));
    SetJobCopies(std::max(jobCopies, 1));
    Words words = AttributeText::Split(attributes);
    JobAttributeCatalogue::JobOptions options = TheCatalogue().JobOptionsFromAttributeWords(words);
    SetJobPdl(std::move(options.pdl));
    SetJobFinishing(std::move(options.finishing));
    m_jobCopyLines->Clear();
    std::wstring pageAttributes =
        TheCatalogue().NormalizePageAttributes(words, m_generateDefaultPageAttributes);
    if (stripColor) {
        pageAttributes =
            AttributeText::Without(pageAttributes, {AttributeText::Color, AttributeText::BlackAndWhite});
        AttributeText::RemoveTrailingComma(pageAttributes);
    }
    return pageAttributes;
}

void CJobContents::GenerateCopyLineFromPageCounterInfo(std::wstring_view attributes, std::int32_t pagesBW,
                                                       std::int32_t pagesColor, std::int32_t pagesBlank,
                                                       std::int32_t sheets) {
    Words words = AttributeText::Split(attributes);
    CCopyLine line;
    line.SetPagesBW(pagesBW);
    line.SetPagesColor(pagesColor);
    line.SetPagesBlank(pagesBlank);
    if (line.PagesBW() == 0 && line.PagesColor() == 0 && line.PagesBlank() == 0) {
        const bool isColor = NamesColor(attributes);
        line.SetPagesColor(isColor ? 1 : 0);
        line.SetPagesBW(isColor ? 0 : 1);
    }
    line.SetSheets(std::max(sheets, 1));
    line.SetAttributes(TheCatalogue().NormalizePageAttributes(words, m_generateDefaultPageAttributes));
    JobAttributeCatalogue::Paper paper = TheCatalogue().PaperFromAttributeWords(words);
    line.SetPaperSize(std::move(paper.name));
    line.SetPaperDimensions(std::move(paper.dimensions));
    m_jobCopyLines->Append(std::move(line));
    m_jobCopyLines->Consolidate();
}

void CJobContents::GenerateContentsFromPageCounterInfo(std::wstring_view attributes,
                                                       std::int32_t jobOriginals, std::int32_t jobCopies,
                                                       std::int32_t jobPages, std::int32_t jobSheets) {
    GenerateGeneralContentsFromPageCounterInfo(attributes, jobOriginals, jobCopies, false);
    const bool isColor = NamesColor(attributes);
    GenerateCopyLineFromPageCounterInfo(attributes, isColor ? 0 : jobPages, isColor ? jobPages : 0, 0,
                                        jobSheets);
}

void CJobContents::GenerateContentsFromDBInfo(std::wstring_view copyLines, std::int32_t jobOriginals,
                                              std::int32_t jobCopies, std::int32_t jobPdlId,
                                              std::int32_t jobFinishingId) {
    m_jobOriginals = jobOriginals;
    m_jobCopies = jobCopies;
    m_jobPdl = TheCatalogue().PdlNameFromDbId(static_cast<std::uint32_t>(jobPdlId));
    m_jobFinishing = TheCatalogue().FinishingNamesFromMask(static_cast<std::uint32_t>(jobFinishingId));
    m_jobCopyLines->Clear();
    AttributeText::ForEachPiece(copyLines, L';', [this](std::wstring_view piece) {
        if (CCopyLine line; ParseDBCopyLine(piece, line))
            m_jobCopyLines->Append(std::move(line));
    });
    m_jobCopyLines->Consolidate();
}
