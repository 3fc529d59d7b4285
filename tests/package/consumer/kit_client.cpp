// Uses one class through smart pointers and one through its identifiers, and prints a value that it read
// back.
#include <JobObjects.h>
#include <JobObjectsPtr.h>

#include <cstdio>

namespace {

void Run() {
    const IPrintJobPtr job(__uuidof(PrintJob));
    _com_util::CheckError(job->put_JobName(_bstr_t(L"Report.docx")));
    _bstr_t xml;
    _com_util::CheckError(job->get_Xml(xml.GetAddress()));

    IPrintJobPtr received;
    _com_util::CheckError(received.CreateInstance(CLSID_PrintJob));
    _com_util::CheckError(received->put_Xml(xml));
    _bstr_t name;
    _com_util::CheckError(received->get_JobName(name.GetAddress()));

    ICopyJob* copyJob = nullptr;
    _com_util::CheckError(CoCreateInstance(CLSID_CopyJob, nullptr, CLSCTX_INPROC_SERVER, IID_ICopyJob,
                                           reinterpret_cast<void**>(&copyJob)));
    copyJob->Release();
    std::printf("received: %ls\n", static_cast<const wchar_t*>(name));
}

} // namespace

int main() {
    if (FAILED(CoInitialize(nullptr)))
        return 2;
    int result = 0;
    try {
        Run();
    } catch (const _com_error& error) {
        std::printf("failed: 0x%08lX\n", static_cast<unsigned long>(error.Error()));
        result = 1;
    }
    CoUninitialize();
    return result;
}
