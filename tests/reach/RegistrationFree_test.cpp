#include "Apartments.h"
#include "JobClient.h"

#include "tests/support/ProgramFolder.h"

#include <string>

// A program whose manifest names the library's assembly, with nothing registered.

namespace {

/// Creates the class by its CLSID and by both ProgIDs, and checks the root element of its XML.
template<class Interface>
void CheckClass(REFCLSID classId, const std::wstring& name, const std::wstring& root) {
    INFO(Narrow(name));
    CHECK(Text(Create<Interface>(classId), &Interface::get_Xml).find(L"<" + root) == 0);
    for (const std::wstring& progId : {L"Corvane." + name, L"Corvane." + name + L".1"}) {
        INFO(Narrow(progId));
        // The system may map the ProgID to another CLSID that is valid in this process only.
        CLSID found;
        REQUIRE_HR(CLSIDFromProgID(progId.c_str(), &found), S_OK);
        CHECK(Text(Create<Interface>(found), &Interface::get_Xml).find(L"<" + root) == 0);
    }
}

bool IsRegistered(const wchar_t* key) {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_CLASSES_ROOT, key, 0, KEY_READ, &opened) != ERROR_SUCCESS)
        return false;
    RegCloseKey(opened);
    return true;
}

} // namespace

TEST_CASE("Registry_of_the_registration_free_tests_has_no_entry_of_the_library") {
    CHECK(IsRegistered(L"CLSID")); // the look-up itself works
    CHECK_FALSE(IsRegistered(L"CLSID\\{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}"));
    CHECK_FALSE(IsRegistered(L"Corvane.PrintJob"));
    CHECK_FALSE(IsRegistered(L"Corvane.JobContents"));
    CHECK_FALSE(IsRegistered(L"TypeLib\\{D47A619E-7CB5-4B98-9A01-93662E11761E}"));
    CHECK_FALSE(IsRegistered(L"Interface\\{A5ABBF48-0C29-4FF5-BAF2-A666978FF20D}"));
}

TEST_CASE("All_classes_without_registration_are_found_by_clsid_and_progid") {
    CheckClass<IPrintJob>(__uuidof(PrintJob), L"PrintJob", L"PrintJob");
    CheckClass<ICopyJob>(__uuidof(CopyJob), L"CopyJob", L"CopyJob");
    CheckClass<IScanJob>(__uuidof(ScanJob), L"ScanJob", L"ScanJob");
    CheckClass<IFaxJob>(__uuidof(FaxJob), L"FaxJob", L"FaxJob");
    CheckClass<IJobContents>(__uuidof(JobContents), L"JobContents", L"JobContents");
    CheckClass<ICopyLines>(__uuidof(CopyLines), L"CopyLines", L"JobCopyLines");
    CheckClass<ICopyLine>(__uuidof(CopyLine), L"CopyLine", L"CopyLine");
    CheckClass<ILogicalPrinter>(__uuidof(LogicalPrinter), L"LogicalPrinter", L"LogicalPrinter");
    CheckClass<IWindowsPrintInfo>(__uuidof(WindowsPrintInfo), L"WindowsPrintInfo", L"WindowsPrintInfo");
    CheckClass<IPolicyResults>(__uuidof(PolicyResults), L"PolicyResults", L"PolicyResults");
}

TEST_CASE("Library_without_registration_is_loaded_from_the_program_folder") {
    const auto job = CreatePrintJob();
    wchar_t path[MAX_PATH];
    const HMODULE library = GetModuleHandleW(L"Tarnwick.dll");
    REQUIRE(library != nullptr);
    REQUIRE(GetModuleFileNameW(library, path, MAX_PATH) > 0);
    CHECK(_wcsicmp(path, BesideProgram("Tarnwick.dll").c_str()) == 0);
}

TEST_CASE("PrintJob_without_registration_works_with_all_its_children") {
    // Reading the full record creates each kind of child by its ProgID; the contents need the catalogue.
    const auto job = CreatePrintJob();
    CheckPrintJob(job);
    CHECK_HR(Put(job, &IPrintJob::put_Xml, ReadTestFile("print_job_full.xml")), S_OK);
    ComPtr<IPolicyResults> results;
    REQUIRE_HR(job->get_PolicyResults(results.Put()), S_OK);
    REQUIRE(results);
    CHECK_TEXT(Text(results, &IPolicyResults::get_PolicyName), L"Colour only for A3 & presentations");
    ComPtr<IWindowsPrintInfo> info;
    REQUIRE_HR(job->get_WindowsPrintInfo(info.Put()), S_OK);
    REQUIRE(info);
    CHECK(Value(info, &IWindowsPrintInfo::get_JobInfoPages) == 32);
}

TEST_CASE("PrintJob_without_registration_works_from_another_apartment") {
    const auto job = CreatePrintJob();
    IStream* stream = nullptr;
    REQUIRE_HR(CoMarshalInterThreadInterfaceInStream(__uuidof(IPrintJob), job.Get(), &stream), S_OK);
    RunInApartment(COINIT_APARTMENTTHREADED, [stream] {
        ComPtr<IPrintJob> remote;
        REQUIRE_HR(CoGetInterfaceAndReleaseStream(stream, __uuidof(IPrintJob), remote.PutVoid()), S_OK);
        REQUIRE(IsProxy(remote.Get()));
        CheckPrintJob(remote);
    });
}
