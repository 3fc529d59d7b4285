#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto contents = JobObjects::JobContents::Create();
    contents.GenerateContentsFromPageCounterInfo(L"A4,Color,Duplex,Staple,PCL", 6, 2, 12, 6);
    std::printf("%ld pages, %ld in colour\n", contents.TotalPages(), contents.TotalPagesColor());
    std::printf("%ls, %ls\n", contents.JobPdl().c_str(), contents.JobFinishing().c_str());

    // The codes for a database, and back.
    std::printf("%ls  %ld  %ld\n", contents.DBCopyLines().c_str(), contents.DBPdl(), contents.DBFinishing());
    const auto restored = JobObjects::JobContents::Create();
    restored.GenerateContentsFromDBInfo(contents.DBCopyLines(), contents.JobOriginals(), contents.JobCopies(),
                                        contents.DBPdl(), contents.DBFinishing());
    std::printf("%ls\n", restored.JobCopyLines().Item(0).Attributes().c_str());
}
