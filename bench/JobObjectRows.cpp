// A print job through its Xml property, compared with the same work without COM, with MSXML, and with the
// bare calls that create the children.

#include "MsxmlPeer.h"
#include "RecordText.h"
#include "Rows.h"

#include "JobObjects.h"

#include <objbase.h>
#include <ole2.h>

namespace {

constexpr const wchar_t* ChildProgIds[] = {L"Corvane.JobContents", L"Corvane.WindowsPrintInfo",
                                           L"Corvane.PolicyResults"};

ComPtr<IUnknown> CreateByProgId(const wchar_t* progId) {
    CLSID classId;
    ComPtr<IUnknown> object;
    Require(CLSIDFromProgID(progId, &classId) == S_OK, "the class of a ProgID");
    Require(CoCreateInstance(classId, nullptr, CLSCTX_ALL, IID_IUnknown, object.PutVoid()) == S_OK,
            "an object");
    Require(OleRun(object.Get()) == S_OK, "a running object");
    return object;
}

ComPtr<IPrintJob> CreatePrintJob() {
    ComPtr<IPrintJob> job;
    Require(CoCreateInstance(__uuidof(PrintJob), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IPrintJob),
                             job.PutVoid()) == S_OK,
            "a print job");
    return job;
}

/// A record's text, with an object and an MSXML document that hold it.
struct HeldJob {
    const JobText* source;
    UniqueBstr text;
    ComPtr<IPrintJob> job;
    ComPtr<IXMLDOMDocument> document;
};

std::vector<HeldJob> HoldJobs() {
    std::vector<HeldJob> held;
    for (const JobText& text : JobTexts())
        held.push_back({&text, UniqueBstr(text.text), CreatePrintJob(), MsxmlPeer::NewDocument()});
    return held;
}

void Put(const ComPtr<IPrintJob>& job, BSTR text) {
    Require(job->put_Xml(text) == S_OK, "Xml put");
}

UniqueBstr Get(const ComPtr<IPrintJob>& job) {
    UniqueBstr text;
    Require(job->get_Xml(text.Put()) == S_OK, "Xml get");
    return text;
}

/// Back to the state of a new record: only its initial job contents are left for reuse.
void DropChildren(const ComPtr<IPrintJob>& job) {
    job->put_PageCounterJobContents(nullptr);
    job->put_WindowsPrintInfo(nullptr);
    job->put_PolicyResults(nullptr);
}

void CheckJobs(const std::vector<HeldJob>& held) {
    const ComPtr<IPrintJob> other = CreatePrintJob();
    for (const HeldJob& job : held) {
        const JobValues& values = job.source->values;
        Put(job.job, job.text.Get());
        Require(Get(job.job).View() == job.source->text, "the text of a record");
        DropChildren(other);
        Put(other, job.text.Get());
        Require(Get(other).View() == job.source->text, "the text of a record with new children");
        Require(MsxmlPeer::Read(job.document.Get(), job.text.Get()) == values, "a value that MSXML read");
        Require(RecordText::Read(MsxmlPeer::Write(job.document.Get()).View()) == values,
                "a text that MSXML loaded");
        Require(RecordText::Read(MsxmlPeer::Write(job.document.Get(), values).View()) == values,
                "a text that MSXML built");
    }
}

template<class Work>
Contender ForAll(const std::string& name, const std::vector<HeldJob>& held, Work work) {
    return {name,
            [&held, work] {
                for (const HeldJob& job : held)
                    work(job);
            },
            static_cast<double>(held.size())};
}

void AddPutRow(Table& table, const std::vector<HeldJob>& held) {
    const ComPtr<IPrintJob> again = CreatePrintJob();
    Put(again, held[0].text.Get());
    table.Time("PrintJob Xml put, children held",
               {ForAll("vtable", held, [&again](const HeldJob& job) { Put(again, job.text.Get()); }),
                ForAll("parser alone", held,
                       [](const HeldJob& job) { Use(RecordText::Read(job.text.View()).guid.size()); }),
                ForAll("MSXML 6 load and read", held,
                       [](const HeldJob& job) {
                           Use(MsxmlPeer::Read(job.document.Get(), job.text.Get()).guid.size());
                       })},
               {{"parser alone", 1.25}, {"MSXML 6 load and read", 0.04}});
}

void AddGetRow(Table& table, const std::vector<HeldJob>& held) {
    const ComPtr<IXMLDOMDocument> built = MsxmlPeer::NewDocument();
    table.Time("PrintJob Xml get",
               {ForAll("vtable", held, [](const HeldJob& job) { Use(Get(job.job).View().size()); }),
                ForAll("writer alone", held,
                       [](const HeldJob& job) { Use(RecordText::Write(job.source->values).Text().size()); }),
                ForAll("MSXML 6 build and get_xml", held,
                       [&built](const HeldJob& job) {
                           Use(MsxmlPeer::Write(built.Get(), job.source->values).View().size());
                       }),
                ForAll("MSXML 6 get_xml of an existing document", held,
                       [](const HeldJob& job) { Use(MsxmlPeer::Write(job.document.Get()).View().size()); })},
               {{"writer alone", 1.5}, {"MSXML 6 build and get_xml", 0.04}});
}

/// One record per call: 64 would take so long that other programs disturb every repetition.
void AddFreshPutRow(Table& table, const std::vector<HeldJob>& held) {
    const ComPtr<IPrintJob> again = CreatePrintJob();
    std::size_t next = 0;
    table.Time("PrintJob Xml put, children created",
               {{"vtable",
                 [&] {
                     DropChildren(again);
                     Put(again, held[next++ % held.size()].text.Get());
                 }},
                {"the three creations alone",
                 [] {
                     for (const wchar_t* progId : ChildProgIds)
                         Use(CreateByProgId(progId) ? 1u : 0u);
                 }}},
               {{"the three creations alone", 1.1}});
}

} // namespace

void AddJobObjectRows(Table& table) {
    const std::vector<HeldJob> held = HoldJobs();
    CheckJobs(held);
    AddPutRow(table, held);
    AddGetRow(table, held);
    AddFreshPutRow(table, held);
}
