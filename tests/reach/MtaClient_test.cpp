#include "Apartments.h"

#include "JobClient.h"

// Clients in the multithreaded apartment. COM creates their objects in a host STA and may keep the class
// object there, so these tests do not check that the library can be unloaded (LeakCheck.cpp).

TEST_CASE("PrintJob_created_by_an_mta_client_works_in_its_host_sta") {
    const MarshallerKey key;
    RunInApartment(COINIT_MULTITHREADED, [] {
        const auto job = CreatePrintJob();
        REQUIRE(IsProxy(job.Get()));
        CheckPrintJob(job);
    });
}

TEST_CASE("PrintJob_of_an_mta_client_can_be_used_by_all_its_threads") {
    const MarshallerKey key;
    RunInApartment(COINIT_MULTITHREADED, [] {
        const auto job = CreatePrintJob();
        REQUIRE_HR(Put(job, &IPrintJob::put_JobName, L"shared"), S_OK);
        RunInApartment(COINIT_MULTITHREADED, [&job] {
            CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"shared");
            CheckErrors(job);
        });
        CHECK_TEXT(TakeErrorDescription(), L"<none>");
    });
}
