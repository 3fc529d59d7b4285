#include "client.h"

int main() {
    Apartment apartment;
    auto line = Create<CopyLine, ICopyLine>();
    Check(line->put_PaperSize(Text(L"A4")));
    Check(line->put_Attributes(Text(L"Duplex")));
    Check(line->put_PagesBW(3));
    Check(line->put_PagesColor(1));
    Check(line->put_Sheets(2));

    LONG pages, sheets, paperCode, attributeBits;
    VARIANT_BOOL duplex;
    Check(line->get_PagesTotal(&pages));
    Check(line->get_Sheets(&sheets));
    Check(line->get_IsDuplex(&duplex));
    Check(line->get_DBPaperSize(&paperCode));
    Check(line->get_DBAttributes(&attributeBits));
    Print(L"%ld pages on %ld sheets, duplex: %ls\n", pages, sheets, TrueOrFalse(duplex));
    Print(L"paper code %ld, attribute bits %ld\n", paperCode, attributeBits);
}
