#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto job = JobObjects::PrintJob::Create();
    job.UserName(L"j.doe");
    job.JobName(L"Report.docx");
    job.DeviceAddress(L"10.1.2.3");
    job.JobContents().GenerateContentsFromPageCounterInfo(L"A4,Duplex,B&W,PCL", 6, 2, 12, 6);

    // Another component receives the job as XML.
    const auto received = JobObjects::PrintJob::Create();
    received.Xml(job.Xml());
    std::printf("%ls printed %ls on %ls\n", received.UserName().c_str(), received.JobName().c_str(),
                received.DeviceAddress().c_str());
    std::printf("%ld pages\n", received.JobContents().TotalPages());
}
