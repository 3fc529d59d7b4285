#include "Apartments.h"

#include "JobClient.h"

#include "tests/support/Wine.h"

#include <windows.h>
#include <tlhelp32.h>

#include <string>

// The library in another process: its AppID names the system's surrogate as host. Tests tagged [in-process]
// also create objects in this process.

namespace {

/// The surrogate's bitness: 32 or 64, by default this program's.
unsigned SurrogateBits() {
    wchar_t text[8];
    const DWORD length = GetEnvironmentVariableW(L"SURROGATE_BITS", text, 8);
    return length == 0 ? sizeof(void*) * 8 : static_cast<unsigned>(_wtoi(text));
}

bool HasLoadedTheLibrary(DWORD process) {
    const HANDLE modules = CreateToolhelp32Snapshot(TH32CS_SNAPMODULE, process);
    MODULEENTRY32W module{};
    module.dwSize = sizeof(module);
    bool found = false;
    for (BOOL more = Module32FirstW(modules, &module); more && !found; more = Module32NextW(modules, &module))
        found = _wcsicmp(module.szModule, L"Tarnwick.dll") == 0;
    CloseHandle(modules);
    return found;
}

/// Wine starts only 32-bit surrogates, but uses a 64-bit one that offers the class. A surrogate offers its
/// class to one client, once.
void StartSurrogateOfWine(REFCLSID classId) {
    wchar_t id[39];
    REQUIRE(StringFromGUID2(classId, id, 39) == 39);
    const std::wstring folder = sizeof(void*) == 8 ? L"system32" : L"sysnative";
    std::wstring command = L"C:\\windows\\" + folder + L"\\dllhost.exe /PROCESSID:" + id;
    STARTUPINFOW startup{};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process{};
    REQUIRE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                           &process));
    if (sizeof(void*) == 8)
        for (int tries = 0; tries < 200 && !HasLoadedTheLibrary(process.dwProcessId); ++tries)
            Sleep(50);
    Sleep(500); // it offers the class soon after that
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

/// The context that selects the surrogate.
DWORD SurrogateContext(REFCLSID classId) {
    if (SurrogateBits() == 32)
        return CLSCTX_LOCAL_SERVER | CLSCTX_ACTIVATE_32_BIT_SERVER;
    if (RunsUnderWine())
        StartSurrogateOfWine(classId);
    return CLSCTX_LOCAL_SERVER | CLSCTX_ACTIVATE_64_BIT_SERVER;
}

template<class Interface>
ComPtr<Interface> CreateElsewhere(REFCLSID classId) {
    ComPtr<Interface> object;
    REQUIRE_HR(
        CoCreateInstance(classId, nullptr, SurrogateContext(classId), __uuidof(Interface), object.PutVoid()),
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

TEST_CASE("PrintJob_in_the_surrogate_keeps_properties_and_xml", "[in-process]") {
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

TEST_CASE("PrintJob_in_the_surrogate_accepts_a_child_of_this_process", "[in-process]") {
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
