#include "client.h"

int main() {
    Apartment apartment;
    auto info = Create<WindowsPrintInfo, IWindowsPrintInfo>();
    Check(info->put_DevModeFields(DM_COPIES | DM_DUPLEX));
    Check(info->put_DevModeCopies(3));
    Check(info->put_DevModeDuplex(DMDUP_VERTICAL));

    LONG copies;
    VARIANT_BOOL duplex;
    Check(info->get_JobInfoCopies(&copies));
    Check(info->get_IsDuplex(&duplex));
    Print(L"%ld copies, duplex: %ls\n", copies, TrueOrFalse(duplex));
}
