#include "client.h"

int main() {
    Apartment apartment;
    auto contents = Create<JobContents, IJobContents>();
    Check(contents->GenerateCopyLineFromPageCounterInfo(Text(L"Letter,Color"), 0, 2, 0, 2));
    Check(contents->GenerateCopyLineFromPageCounterInfo(Text(L"A4,Duplex"), 6, 0, 0, 3));

    Ref<ICopyLines> lines;
    LONG count, allPages, colorPages;
    Check(contents->get_JobCopyLines(lines.Put()));
    Check(lines->get_Count(&count));
    for (LONG i = 0; i < count; ++i) {
        Ref<ICopyLine> line;
        Text paper;
        LONG pages, sheets;
        Check(lines->Item(i, line.Put()));
        Check(line->get_PaperSize(paper.Put()));
        Check(line->get_PagesTotal(&pages));
        Check(line->get_Sheets(&sheets));
        Print(L"%ls: %ld pages on %ld sheets\n", paper.Get(), pages, sheets);
    }
    Check(lines->get_TotalPages(&allPages));
    Check(lines->get_TotalPagesColor(&colorPages));
    Print(L"%ld pages, %ld of them in colour\n", allPages, colorPages);
}
