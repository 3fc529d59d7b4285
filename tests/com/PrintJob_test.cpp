#include "ComClient.h"

TEST_CASE("PrintJob_new_record_has_the_current_version") {
    CHECK_TEXT(Text(CreatePrintJob(), &IPrintJob::get_Version), L"7.26");
}

TEST_CASE("PrintJob_Xml_without_its_root_fails_with_its_message") {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_Xml, L"<x/>"), E_FAIL);
    CHECK_TEXT(TakeErrorDescription(), L"PrintJob element is missing.");
}
