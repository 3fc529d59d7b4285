#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto info = JobObjects::WindowsPrintInfo::Create();
    info.DevModeFields(DM_COPIES | DM_DUPLEX);
    info.DevModeCopies(3);
    info.DevModeDuplex(DMDUP_VERTICAL);
    std::printf("%ld copies, duplex: %s\n", info.JobInfoCopies(), info.IsDuplex() ? "True" : "False");
}
