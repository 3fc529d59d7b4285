#include "client.h"

int main() {
    Apartment apartment;
    auto job = Create<FaxJob, IFaxJob>();
    Check(job->put_DeviceId(17));
    Check(job->put_PhoneNumber(Text(L"+49 30 1234567")));
    Check(job->put_RemoteStationId(Text(L"ACME")));
    Ref<IJobContents> contents, receivedContents;
    Check(job->get_JobContents(contents.Put()));
    Check(contents->GenerateContentsFromPageCounterInfo(Text(L"A4,B&W"), 2, 1, 2, 2));

    Text xml, number, station;
    LONG pages;
    Check(job->get_Xml(xml.Put()));
    auto received = Create<FaxJob, IFaxJob>();
    Check(received->put_Xml(xml));
    Check(received->get_PhoneNumber(number.Put()));
    Check(received->get_RemoteStationId(station.Put()));
    Check(received->get_JobContents(receivedContents.Put()));
    Check(receivedContents->get_TotalPages(&pages));
    Print(L"%ld pages to %ls (%ls)\n", pages, number.Get(), station.Get());
}
