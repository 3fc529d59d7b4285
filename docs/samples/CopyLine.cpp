#include <JobObjects.hpp>

#include <cstdio>

int main() {
    const JobObjects::Apartment apartment;
    const auto line = JobObjects::CopyLine::Create();
    line.PaperSize(L"A4");
    line.Attributes(L"Duplex");
    line.PagesBW(3);
    line.PagesColor(1);
    line.Sheets(2);
    std::printf("%ld pages on %ld sheets, duplex: %s\n", line.PagesTotal(), line.Sheets(),
                line.IsDuplex() ? "True" : "False");
    std::printf("paper code %ld, attribute bits %ld\n", line.DBPaperSize(), line.DBAttributes());
}
