// Input: five numbers, then a text. Job contents generated from it, as a database text and as a page
// counter's report, write a database text that restores the same contents.

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

/// The first round trip may drop lines whose attributes have no code; the second changes nothing.
void CheckCodesFixPoint(const CJobContents& contents) {
    CJobContents second;
    FromCodes(second, contents.DBCopyLines(), contents);
    CJobContents third;
    FromCodes(third, second.DBCopyLines(), second);
    Require(second.JobCopyLines().Count() <= contents.JobCopyLines().Count(), "added lines");
    Require(third.DBCopyLines() == second.DBCopyLines(), "copy lines change in a round trip");
    Require(third.DBPdl() == second.DBPdl() && third.JobPdl() == second.JobPdl(), "the PDL changes");
    Require(third.DBFinishing() == second.DBFinishing() && third.JobFinishing() == second.JobFinishing(),
            "the finishing changes");
    CJobContents read;
    Require(read.put_Xml(Fuzzing::XmlOf(third)) && read.DBCopyLines() == third.DBCopyLines(),
            "the codes change in an XML round trip");
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
    Require(contents.JobCopyLines().Count() == 0, "copy lines remain");
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
