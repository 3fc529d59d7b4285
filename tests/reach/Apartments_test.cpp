#include "Apartments.h"

#include "JobClient.h"

// The tests run in a single-threaded apartment.

namespace {

ComPtr<IGlobalInterfaceTable> CreateGlobalTable() {
    ComPtr<IGlobalInterfaceTable> table;
    REQUIRE_HR(CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IGlobalInterfaceTable, table.PutVoid()),
               S_OK);
    return table;
}

} // namespace

TEST_CASE("PrintJob_marshalled_by_stream_works_from_another_sta") {
    const MarshallerKey key;
    const auto job = CreatePrintJob();
    IStream* stream = nullptr;
    REQUIRE_HR(CoMarshalInterThreadInterfaceInStream(__uuidof(IPrintJob), job.Get(), &stream), S_OK);
    RunInApartment(COINIT_APARTMENTTHREADED, [stream] {
        ComPtr<IPrintJob> remote;
        REQUIRE_HR(CoGetInterfaceAndReleaseStream(stream, __uuidof(IPrintJob), remote.PutVoid()), S_OK);
        REQUIRE(IsProxy(remote.Get()));
        CheckPrintJob(remote);
        CHECK_HR(Put(remote, &IPrintJob::put_JobName, L"from the other side"), S_OK);
    });
    REQUIRE_FALSE(IsProxy(job.Get()));
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"from the other side");
    CHECK_TEXT(TakeErrorDescription(), L"<none>"); // error information belongs to the calling thread
}

TEST_CASE("PrintJob_in_the_global_interface_table_works_from_another_sta") {
    const MarshallerKey key;
    const auto job = CreatePrintJob();
    const auto table = CreateGlobalTable();
    DWORD cookie = 0;
    REQUIRE_HR(table->RegisterInterfaceInGlobal(job.Get(), __uuidof(IPrintJob), &cookie), S_OK);
    for (int visit = 0; visit < 2; ++visit) {
        RunInApartment(COINIT_APARTMENTTHREADED, [cookie] {
            ComPtr<IPrintJob> remote;
            REQUIRE_HR(
                CreateGlobalTable()->GetInterfaceFromGlobal(cookie, __uuidof(IPrintJob), remote.PutVoid()),
                S_OK);
            REQUIRE(IsProxy(remote.Get()));
            CheckPrintJob(remote);
        });
    }
    CHECK_HR(table->RevokeInterfaceFromGlobal(cookie), S_OK);
}
