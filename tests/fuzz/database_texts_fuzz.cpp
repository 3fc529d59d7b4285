// A line of five numbers (bytes), then a text: job contents made from it as database text and as a page
// counter's report give a database text that gives the same contents again.

#include "RecordFixPoint.h"

#include "JobObjects/contents/CJobContents.h"

#include <array>

using Fuzzing::Require;

namespace {

using Numbers = std::array<std::int32_t, 5>;

void FromCodes(CJobContents& contents, std::wstring_view text, const CJobContents& like) {
    contents.GenerateContentsFromDBInfo(text, like.JobOriginals(), like.JobCopies(), like.DBPdl(),
                                        like.DBFinishing());
}

/// Lines whose attributes have no code are left out once; from then on nothing changes.
void CheckCodesFixPoint(const CJobContents& contents) {
    CJobContents second;
    FromCodes(second, contents.DBCopyLines(), contents);
    CJobContents third;
    FromCodes(third, second.DBCopyLines(), second);
    Require(second.JobCopyLines().Count() <= contents.JobCopyLines().Count(), "lines from nowhere");
    Require(third.DBCopyLines() == second.DBCopyLines(), "other copy lines from their own codes");
    Require(third.DBPdl() == second.DBPdl() && third.JobPdl() == second.JobPdl(), "another PDL");
    Require(third.DBFinishing() == second.DBFinishing() && third.JobFinishing() == second.JobFinishing(),
            "other finishing");
    CJobContents read;
    Require(read.put_Xml(Fuzzing::XmlOf(third)) && read.DBCopyLines() == third.DBCopyLines(),
            "other codes from the same contents' text");
}

void CheckDatabaseText(std::wstring_view text, const Numbers& n) {
    CJobContents contents;
    contents.GenerateContentsFromDBInfo(text, n[0], n[1], n[2], n[3]);
    Require(contents.JobOriginals() == n[0] && contents.JobCopies() == n[1], "counts not stored as given");
    for (std::size_t line = 0; line < contents.JobCopyLines().Count(); ++line)
        Require(contents.JobCopyLines().Line(line).DBPaperSize() != 0, "a copy line without a paper");
    CheckCodesFixPoint(contents);
}

void CheckPageCounterText(std::wstring_view text, const Numbers& n) {
    CJobContents contents;
    contents.GenerateContentsFromPageCounterInfo(text, n[0], n[1], n[2], n[3]);
    Require(contents.JobOriginals() >= 1 && contents.JobCopies() >= 1, "counts below one");
    Require(contents.JobCopyLines().Count() == 1, "not one copy line");
    const CCopyLine& line = contents.JobCopyLines().Line(0);
    Require(line.PagesTotal() >= 1 && line.Sheets() >= 1 && line.PagesBlank() == 0, "pages");
    Require((line.PagesColor() == 0) != (line.PagesBW() == 0), "pages of both kinds, or of none");
    CheckCodesFixPoint(contents);
    contents.GenerateGeneralContentsFromPageCounterInfo(text, n[0], n[1], true);
    Require(contents.JobCopyLines().Count() == 0, "copy lines are left");
    contents.GenerateCopyLineFromPageCounterInfo(text, n[1], n[2], n[3], n[4]);
    contents.GenerateCopyLineFromPageCounterInfo({}, n[4], n[3], n[2], n[1]);
    Require(contents.JobCopyLines().Count() >= 1, "no copy lines");
    CheckCodesFixPoint(contents);
}

} // namespace

void RunInput(std::string_view bytes) {
    Numbers numbers;
    for (std::int32_t& number : numbers)
        number = static_cast<std::int32_t>(Fuzzing::TakeNumber(bytes));
    const std::wstring text = Fuzzing::Widen(bytes);
    CheckDatabaseText(text, numbers);
    CheckPageCounterText(text, numbers);
}
