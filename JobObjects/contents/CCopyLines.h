#pragma once

#include "CCopyLine.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// The copy lines of a job, in order.
class CCopyLines {
public:
    std::size_t Count() const noexcept { return m_lines.size(); }
    /// The index must be below Count().
    const CCopyLine& Line(std::size_t index) const noexcept { return *m_lines[index]; }
    void Clear() noexcept { m_lines.clear(); }
    void Append(CCopyLine line);

    /// Merges the lines of each paper size (exact case) and sorts them by it: the database form has one line
    /// per paper size. The first line's attributes and dimensions win.
    void Consolidate();

    // Sums over all lines; they wrap at 32 bits.

    std::int32_t TotalPages() const noexcept;
    /// Excludes blank pages.
    std::int32_t TotalPagesBW() const noexcept;
    std::int32_t TotalPagesColor() const noexcept;
    bool ContainsDuplex() const noexcept;

    /// The database text: "paper,bw,color,sheets,attributes" per line, joined by ";". Blank pages count as
    /// black-and-white.
    QxString DBText() const;

    /// Reads a "JobCopyLines" element and consolidates the lines. If there is none, clears the lines, logs
    /// and returns false.
    bool put_Xml(std::wstring_view xml);
    /// Reads the parser's current element.
    void ReadXml(QxXmlParser& parser);
    /// Does not consolidate.
    void WriteXml(QxXmlWriter& writer) const;

private:
    std::vector<std::shared_ptr<CCopyLine>> m_lines;
};
