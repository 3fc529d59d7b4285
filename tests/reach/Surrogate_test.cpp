#include "Apartments.h"

#include "JobClient.h"

// The library in another process: its AppID names the system's surrogate as host.

namespace {

template<class Interface>
ComPtr<Interface> CreateElsewhere(REFCLSID classId) {
    ComPtr<Interface> object;
    REQUIRE_HR(CoCreateInstance(classId, nullptr, CLSCTX_LOCAL_SERVER, __uuidof(Interface), object.PutVoid()),
               S_OK);
    REQUIRE(IsProxy(object.Get()));
    return object;
}

ComPtr<IPrintJob> CreateJobElsewhere() {
    return CreateElsewhere<IPrintJob>(__uuidof(PrintJob));
}

template<class Interface>
void CheckRoundTrip(REFCLSID classId) {
    const auto record = CreateElsewhere<Interface>(classId);
    const std::wstring xml = Text(record, &Interface::get_Xml);
    CHECK_FALSE(xml.empty());
    CHECK_HR(Put(record, &Interface::put_Xml, xml), S_OK);
    CHECK_TEXT(Text(record, &Interface::get_Xml), xml);
}

} // namespace

TEST_CASE("PrintJob_in_the_surrogate_is_not_loaded_into_the_client") {
    const MarshallerKey key;
    CoFreeUnusedLibrariesEx(0, 0);
    REQUIRE(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
    const auto job = CreateJobElsewhere();
    CHECK_HR(Put(job, &IPrintJob::put_JobName, L"far away"), S_OK);
    CHECK_TEXT(Text(job, &IPrintJob::get_JobName), L"far away");
    CHECK(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
}

TEST_CASE("PrintJob_in_the_surrogate_keeps_properties_and_xml") {
    const MarshallerKey key;
    const auto job = CreateJobElsewhere();
    CheckPropertiesAndXml(job);
    CheckLateBinding(job);
}

TEST_CASE("PrintJob_in_the_surrogate_returns_its_children") {
    const MarshallerKey key;
    const auto job = CreateJobElsewhere();
    CheckChildren(job);
    CheckOutParameters(job);
}

TEST_CASE("PrintJob_in_the_surrogate_accepts_a_child_of_this_process") {
    const MarshallerKey key;
    CheckOwnChild(CreateJobElsewhere());
}

TEST_CASE("PrintJob_in_the_surrogate_reports_its_errors") {
    const MarshallerKey key;
    CheckErrors(CreateJobElsewhere());
}

TEST_CASE("All_classes_can_be_created_in_the_surrogate") {
    const MarshallerKey key;
    CheckRoundTrip<IPrintJob>(__uuidof(PrintJob));
    CheckRoundTrip<ICopyJob>(__uuidof(CopyJob));
    CheckRoundTrip<IScanJob>(__uuidof(ScanJob));
    CheckRoundTrip<IFaxJob>(__uuidof(FaxJob));
    CheckRoundTrip<IJobContents>(__uuidof(JobContents));
    CheckRoundTrip<ICopyLines>(__uuidof(CopyLines));
    CheckRoundTrip<ICopyLine>(__uuidof(CopyLine));
    CheckRoundTrip<ILogicalPrinter>(__uuidof(LogicalPrinter));
    CheckRoundTrip<IWindowsPrintInfo>(__uuidof(WindowsPrintInfo));
    CheckRoundTrip<IPolicyResults>(__uuidof(PolicyResults));
}
