#pragma once

#include "common/text/QxString.h"

#include <cstdint>
#include <string_view>
#include <utility>

class QxXmlParser;
class QxXmlWriter;

/// Pages of a job with the same paper size and page attributes.
class CCopyLine {
public:
    /// Comma-separated page-attribute words.
    const QxString& Attributes() const noexcept { return m_attributes; }
    void SetAttributes(QxString value) noexcept { m_attributes = std::move(value); }
    /// Width and height, "x,y" in the catalogue's unit.
    const QxString& PaperDimensions() const noexcept { return m_paperDimensions; }
    void SetPaperDimensions(QxString value) noexcept { m_paperDimensions = std::move(value); }
    const QxString& PaperSize() const noexcept { return m_paperSize; }
    void SetPaperSize(QxString value) noexcept { m_paperSize = std::move(value); }

    // A negative count is stored as 0.

    std::int32_t PagesBlank() const noexcept { return m_pagesBlank; }
    void SetPagesBlank(std::int32_t value) noexcept { m_pagesBlank = value > 0 ? value : 0; }
    std::int32_t PagesBW() const noexcept { return m_pagesBW; }
    void SetPagesBW(std::int32_t value) noexcept { m_pagesBW = value > 0 ? value : 0; }
    std::int32_t PagesColor() const noexcept { return m_pagesColor; }
    void SetPagesColor(std::int32_t value) noexcept { m_pagesColor = value > 0 ? value : 0; }
    std::int32_t Sheets() const noexcept { return m_sheets; }
    void SetSheets(std::int32_t value) noexcept { m_sheets = value > 0 ? value : 0; }

    /// Sum of color, black-and-white and blank pages; wraps at 32 bits.
    std::int32_t PagesTotal() const noexcept;
    bool IsColor() const noexcept { return m_pagesColor > 0; }
    /// Whether the attributes contain "Duplex" anywhere, in exact case.
    bool IsDuplex() const noexcept;
    /// The catalogue's code of the paper size, or 0.
    std::int32_t DBPaperSize() const;
    /// The catalogue's mask of the attributes.
    std::int32_t DBAttributes() const;

    /// Adds the other line's counts. A sum that wraps to a negative value is stored as 0.
    void AddCounts(const CCopyLine& other) noexcept;

    /// Reads a "CopyLine" element, also in the older form with one page count. Logs and returns false if
    /// there is none.
    bool put_Xml(std::wstring_view xml);
    /// Reads the parser's current element.
    void ReadXml(QxXmlParser& parser);
    void WriteXml(QxXmlWriter& writer) const;

private:
    void ReadOlderForm(std::int32_t pages, const QxString& attributes);

    QxString m_attributes;
    std::int32_t m_pagesBlank = 0;
    std::int32_t m_pagesBW = 0;
    std::int32_t m_pagesColor = 0;
    QxString m_paperDimensions;
    QxString m_paperSize;
    std::int32_t m_sheets = 0;
};
