// Input: job contents.

#include "RecordFixPoint.h"

#include "JobObjects/contents/CJobContents.h"

void RunInput(std::string_view bytes) {
    CJobContents contents;
    Fuzzing::CheckFixPoint(contents, Fuzzing::Widen(bytes));
    Fuzzing::Require(contents.JobOriginals() >= 0 && contents.JobCopies() >= 0, "a negative count");
    Fuzzing::Require(contents.IsPdlEMF() ==
                         (contents.JobPdl().view().find(L"EMF") != std::wstring_view::npos),
                     "a page description language's kind");
    Fuzzing::Require(contents.DBCopyLines() == contents.JobCopyLines().DBText(), "the copy lines' codes");
}
