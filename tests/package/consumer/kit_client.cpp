// Uses one class through its wrapper and one through its identifiers, and prints a value that it read back.
#include <JobObjects.hpp>

#include <cstdio>

namespace {

void Run() {
    const JobObjects::Apartment apartment;
    const auto job = JobObjects::PrintJob::Create();
    job.JobName(L"Report.docx");
    const auto received = JobObjects::PrintJob::Create();
    received.Xml(job.Xml());

    JobObjects::CopyJob copyJob;
    const HRESULT result = CoCreateInstance(CLSID_CopyJob, nullptr, CLSCTX_INPROC_SERVER, IID_ICopyJob,
                                            reinterpret_cast<void**>(copyJob.Out()));
    if (FAILED(result))
        throw JobObjects::Error(result, L"no copy job");
    std::printf("received: %ls\n", received.JobName().c_str());
}

} // namespace

int main() {
    try {
        Run();
        return 0;
    } catch (const JobObjects::Error& error) {
        std::printf("failed: %s\n", error.what());
        return 1;
    }
}
