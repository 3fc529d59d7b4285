// Input: copy lines.

#include "RecordFixPoint.h"

#include "JobObjects/contents/CCopyLines.h"

#include <algorithm>

namespace {

void CheckLines(const CCopyLines& lines) {
    std::uint32_t pages = 0;
    bool duplex = false;
    for (std::size_t index = 0; index < lines.Count(); ++index) {
        const CCopyLine& line = lines.Line(index);
        Fuzzing::Require(index == 0 || lines.Line(index - 1).PaperSize().view() < line.PaperSize().view(),
                         "lines out of order, or two for one paper size");
        pages += static_cast<std::uint32_t>(line.PagesTotal());
        duplex = duplex || line.IsDuplex();
    }
    Fuzzing::Require(lines.TotalPages() == static_cast<std::int32_t>(pages), "total pages");
    Fuzzing::Require(lines.ContainsDuplex() == duplex, "duplex");
    const QxString text = lines.DBText();
    const std::wstring_view view = text.view();
    Fuzzing::Require(static_cast<std::size_t>(std::count(view.begin(), view.end(), L',')) ==
                         4 * lines.Count(),
                     "not five fields a line");
}

} // namespace

void RunInput(std::string_view bytes) {
    CCopyLines lines;
    Fuzzing::CheckFixPoint(lines, Fuzzing::Widen(bytes));
    CheckLines(lines);
}
