#include "CCopyLines.h"

#include "JobAttributeCatalogue.h"
#include "WrappingSum.h"

#include "common/text/Numbers.h"
#include "common/xml/QxXmlParser.h"
#include "common/xml/QxXmlWriter.h"
#include "common/log/QxLogger.h"

#include <algorithm>
#include <utility>

void CCopyLines::Append(CCopyLine line) {
    m_lines.push_back(std::make_shared<CCopyLine>(std::move(line)));
}

void CCopyLines::Consolidate() {
    std::stable_sort(m_lines.begin(), m_lines.end(), [](const auto& a, const auto& b) {
        return a->PaperSize().view() < b->PaperSize().view();
    });
    std::size_t kept = 0;
    for (auto& line : m_lines) {
        if (kept > 0 && m_lines[kept - 1]->PaperSize() == line->PaperSize())
            m_lines[kept - 1]->AddCounts(*line);
        else
            m_lines[kept++].swap(line);
    }
    m_lines.resize(kept);
}

std::int32_t CCopyLines::TotalPages() const noexcept {
    std::int32_t total = 0;
    for (const auto& line : m_lines)
        total = WrappingSum(total, line->PagesTotal());
    return total;
}

std::int32_t CCopyLines::TotalPagesBW() const noexcept {
    std::int32_t total = 0;
    for (const auto& line : m_lines)
        total = WrappingSum(total, line->PagesBW());
    return total;
}

std::int32_t CCopyLines::TotalPagesColor() const noexcept {
    std::int32_t total = 0;
    for (const auto& line : m_lines)
        total = WrappingSum(total, line->PagesColor());
    return total;
}

bool CCopyLines::ContainsDuplex() const noexcept {
    return std::any_of(m_lines.begin(), m_lines.end(), [](const auto& line) { return line->IsDuplex(); });
}

QxString CCopyLines::DBText() const {
    std::wstring text;
    for (const auto& line : m_lines) {
        if (!text.empty())
            text.push_back(L';');
        // In the order of the text, so that unknown words are logged in that order.
        const std::int32_t paper = line->DBPaperSize();
        const std::int32_t attributes = line->DBAttributes();
        // The database has no blank pages: they count as black-and-white.
        const std::int32_t pagesBW = WrappingSum(line->PagesBW(), line->PagesBlank());
        // Not QxMisc::FormatString: out of memory, it returns the format itself.
        for (const std::int32_t value : {paper, pagesBW, line->PagesColor(), line->Sheets(), attributes})
            text.append(QxMisc::FormatInt32(value)).push_back(L',');
        text.pop_back();
    }
    return text;
}

bool CCopyLines::put_Xml(std::wstring_view xml) {
    Clear();
    QxXmlParser parser;
    parser.SetDocument(xml);
    if (!parser.FindElement(L"JobCopyLines")) {
        LogError(L"[CCopyLines::put_Xml] Invalid Xml fragment");
        return false;
    }
    ReadXml(parser);
    return true;
}

void CCopyLines::ReadXml(QxXmlParser& parser) {
    Clear();
    while (parser.FindChildElement(L"CopyLine")) {
        CCopyLine line;
        parser.IntoElement();
        line.ReadXml(parser);
        parser.OutOfElement();
        Append(std::move(line));
    }
    Consolidate();
}

void CCopyLines::WriteXml(QxXmlWriter& writer) const {
    // Both tags even without lines.
    writer.Raw(L"<JobCopyLines>");
    for (const auto& line : m_lines)
        line->WriteXml(writer);
    writer.Raw(L"</JobCopyLines>");
}
