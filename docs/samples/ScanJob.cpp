#include "client.h"

int main() {
    Apartment apartment;
    auto job = Create<ScanJob, IScanJob>();
    Check(job->put_DeviceId(17));
    Check(job->put_Destination(Text(L"archive@example.com")));
    Ref<IJobContents> contents, receivedContents;
    Check(job->get_JobContents(contents.Put()));
    Check(contents->GenerateContentsFromPageCounterInfo(Text(L"A4,Color"), 8, 1, 8, 8));

    Text xml, destination;
    LONG pages;
    Check(job->get_Xml(xml.Put()));
    auto received = Create<ScanJob, IScanJob>();
    Check(received->put_Xml(xml));
    Check(received->get_Destination(destination.Put()));
    Check(received->get_JobContents(receivedContents.Put()));
    Check(receivedContents->get_TotalPages(&pages));
    Print(L"%ld pages to %ls\n", pages, destination.Get());
}
