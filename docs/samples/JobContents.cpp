#include "client.h"

int main() {
    Apartment apartment;
    auto contents = Create<JobContents, IJobContents>();
    Check(contents->GenerateContentsFromPageCounterInfo(Text(L"A4,Color,Duplex,Staple,PCL"), 6, 2, 12, 6));
    LONG pages, colorPages, originals, copies, languageCode, finishingBits;
    Text language, finishing, databaseLines;
    Check(contents->get_TotalPages(&pages));
    Check(contents->get_TotalPagesColor(&colorPages));
    Check(contents->get_JobPdl(language.Put()));
    Check(contents->get_JobFinishing(finishing.Put()));
    Print(L"%ld pages, %ld in colour\n", pages, colorPages);
    Print(L"%ls, %ls\n", language.Get(), finishing.Get());

    // The codes for a database, and back.
    Check(contents->get_DBCopyLines(databaseLines.Put()));
    Check(contents->get_JobOriginals(&originals));
    Check(contents->get_JobCopies(&copies));
    Check(contents->get_DBPdl(&languageCode));
    Check(contents->get_DBFinishing(&finishingBits));
    Print(L"%ls  %ld  %ld\n", databaseLines.Get(), languageCode, finishingBits);

    auto restored = Create<JobContents, IJobContents>();
    Check(
        restored->GenerateContentsFromDBInfo(databaseLines, originals, copies, languageCode, finishingBits));
    Ref<ICopyLines> lines;
    Ref<ICopyLine> line;
    Text attributes;
    Check(restored->get_JobCopyLines(lines.Put()));
    Check(lines->Item(0, line.Put()));
    Check(line->get_Attributes(attributes.Put()));
    Print(L"%ls\n", attributes.Get());
}
