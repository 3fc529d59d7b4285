#include "client.h"

int main() {
    Apartment apartment;
    auto job = Create<CopyJob, ICopyJob>();
    Check(job->put_DeviceId(17));
    Check(job->put_IdentifierData(Text(L"4711")));
    Ref<IJobContents> contents, receivedContents;
    Check(job->get_JobContents(contents.Put()));
    Check(contents->GenerateContentsFromPageCounterInfo(Text(L"A4,B&W"), 3, 5, 15, 15));

    Text xml, card;
    LONG copies, device;
    Check(job->get_Xml(xml.Put()));
    auto received = Create<CopyJob, ICopyJob>();
    Check(received->put_Xml(xml));
    Check(received->get_IdentifierData(card.Put()));
    Check(received->get_DeviceId(&device));
    Check(received->get_JobContents(receivedContents.Put()));
    Check(receivedContents->get_JobCopies(&copies));
    Print(L"card %ls made %ld copies on device %ld\n", card.Get(), copies, device);
}
