#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto contents = JobObjects::JobContents::Create();
    contents.GenerateCopyLineFromPageCounterInfo(L"Letter,Color", 0, 2, 0, 2);
    contents.GenerateCopyLineFromPageCounterInfo(L"A4,Duplex", 6, 0, 0, 3);

    const auto lines = contents.JobCopyLines();
    for (LONG i = 0; i < lines.Count(); ++i) {
        const auto line = lines.Item(i);
        std::printf("%ls: %ld pages on %ld sheets\n", line.PaperSize().c_str(), line.PagesTotal(),
                    line.Sheets());
    }
    std::printf("%ld pages, %ld of them in colour\n", lines.TotalPages(), lines.TotalPagesColor());
}
