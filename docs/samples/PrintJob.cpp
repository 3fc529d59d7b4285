#include "client.h"

int main() {
    Apartment apartment;
    auto job = Create<PrintJob, IPrintJob>();
    Check(job->put_UserName(Text(L"j.doe")));
    Check(job->put_JobName(Text(L"Report.docx")));
    Check(job->put_DeviceAddress(Text(L"10.1.2.3")));
    Ref<IJobContents> contents;
    Check(job->get_JobContents(contents.Put()));
    Check(contents->GenerateContentsFromPageCounterInfo(Text(L"A4,Duplex,B&W,PCL"), 6, 2, 12, 6));

    // Another component receives the job as XML.
    Text xml, user, name, address;
    Check(job->get_Xml(xml.Put()));
    auto received = Create<PrintJob, IPrintJob>();
    Check(received->put_Xml(xml));
    Check(received->get_UserName(user.Put()));
    Check(received->get_JobName(name.Put()));
    Check(received->get_DeviceAddress(address.Put()));
    Print(L"%ls printed %ls on %ls\n", user.Get(), name.Get(), address.Get());

    Ref<IJobContents> receivedContents;
    LONG pages;
    Check(received->get_JobContents(receivedContents.Put()));
    Check(receivedContents->get_TotalPages(&pages));
    Print(L"%ld pages\n", pages);
}
