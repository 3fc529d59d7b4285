// Input: a copy line.

#include "RecordFixPoint.h"

#include "JobObjects/contents/CCopyLine.h"

void RunInput(std::string_view bytes) {
    CCopyLine line;
    Fuzzing::CheckFixPoint(line, Fuzzing::Widen(bytes));
    Fuzzing::Require(line.PagesBW() >= 0 && line.PagesColor() >= 0 && line.PagesBlank() >= 0 &&
                         line.Sheets() >= 0,
                     "a negative count");
    Fuzzing::Require(line.IsColor() == (line.PagesColor() > 0), "color without color pages");
}
