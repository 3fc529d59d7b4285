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

    /// Merges the lines of each paper size (exact case) into the first of them and orders the result by
    /// paper size. The first line's attributes and dimensions stay, even where the others differ: the
    /// database form holds one line per paper size.
    void Consolidate();

    // Sums over all lines; they wrap around at 32 bits.

    std::int32_t TotalPages() const noexcept;
    /// Without blank pages.
    std::int32_t TotalPagesBW() const noexcept;
    std::int32_t TotalPagesColor() const noexcept;
    bool ContainsDuplex() const noexcept;

    /// The database text: "paper,bw,color,sheets,attributes" a line, joined by ";". Blank pages count as
    /// black-and-white.
    QxString DBText() const;

    /// Reads a "JobCopyLines" element and consolidates the lines. Returns false after logging, with no
    /// lines, when the text does not hold one.
    bool put_Xml(std::wstring_view xml);
    /// Reads the parser's current element.
    void ReadXml(QxXmlParser& parser);
    /// Writes the lines as they stand, without consolidating them.
    void WriteXml(QxXmlWriter& writer) const;

private:
    std::vector<std::shared_ptr<CCopyLine>> m_lines;
};
