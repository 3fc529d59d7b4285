#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto job = JobObjects::ScanJob::Create();
    job.DeviceId(17);
    job.Destination(L"archive@example.com");
    job.JobContents().GenerateContentsFromPageCounterInfo(L"A4,Color", 8, 1, 8, 8);

    const auto received = JobObjects::ScanJob::Create();
    received.Xml(job.Xml());
    std::printf("%ld pages to %ls\n", received.JobContents().TotalPages(), received.Destination().c_str());
}
