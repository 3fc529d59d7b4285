#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto job = JobObjects::FaxJob::Create();
    job.DeviceId(17);
    job.PhoneNumber(L"+49 30 1234567");
    job.RemoteStationId(L"ACME");
    job.JobContents().GenerateContentsFromPageCounterInfo(L"A4,B&W", 2, 1, 2, 2);

    const auto received = JobObjects::FaxJob::Create();
    received.Xml(job.Xml());
    std::printf("%ld pages to %ls (%ls)\n", received.JobContents().TotalPages(),
                received.PhoneNumber().c_str(), received.RemoteStationId().c_str());
}
