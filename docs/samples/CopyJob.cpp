#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto job = JobObjects::CopyJob::Create();
    job.DeviceId(17);
    job.IdentifierData(L"4711");
    job.JobContents().GenerateContentsFromPageCounterInfo(L"A4,B&W", 3, 5, 15, 15);

    const auto received = JobObjects::CopyJob::Create();
    received.Xml(job.Xml());
    std::printf("card %ls made %ld copies on device %ld\n", received.IdentifierData().c_str(),
                received.JobContents().JobCopies(), received.DeviceId());
}
