#include "Timing.h"

#include "common/Bstr.h"
#include "common/ComPtr.h"

#include "JobObjects.h"

#include <windows.h>
#include <objbase.h>
#include <ole2.h>

#include <cstdio>
#include <fstream>
#include <iterator>

// A whole print job record through the Xml property, beside the bare COM calls that a read has to make: each
// child is looked up and created by ProgID.

namespace {

constexpr const wchar_t* childProgIds[] = {L"Corvane.JobContents", L"Corvane.WindowsPrintInfo",
                                           L"Corvane.PolicyResults"};

UniqueBstr ReadRecord() {
    std::ifstream file(TEST_DATA_FOLDER "/print_job_full.xml", std::ios::binary);
    Require(file.is_open(), "the record's file");
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    return UniqueBstr(std::wstring(bytes.begin(), bytes.end()));
}

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

void PutAndGet(const ComPtr<IPrintJob>& job, const UniqueBstr& xml) {
    UniqueBstr written;
    Require(job->put_Xml(xml.Get()) == S_OK && job->get_Xml(written.Put()) == S_OK, "Xml");
    Use(written.View().size());
}

/// As after the record was made: only the job contents that a record starts with are left to be reused.
void DropChildren(const ComPtr<IPrintJob>& job) {
    job->put_PageCounterJobContents(nullptr);
    job->put_WindowsPrintInfo(nullptr);
    job->put_PolicyResults(nullptr);
}

} // namespace

int main() {
    Require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_OK, "COM");
    const UniqueBstr xml = ReadRecord();
    const ComPtr<IPrintJob> fresh = CreatePrintJob();
    const ComPtr<IPrintJob> filled = CreatePrintJob();
    UniqueBstr written;
    PutAndGet(filled, xml);
    Require(filled->get_Xml(written.Put()) == S_OK, "Xml");
    PutAndGet(fresh, written);
    UniqueBstr again;
    Require(fresh->get_Xml(again.Put()) == S_OK && again.View() == written.View(), "the same text again");

    std::printf("record of %u characters\n", static_cast<unsigned>(written.View().size()));
    PrintTable("a print job record with all children, Xml put and get",
               {{"children created by the read",
                 [&] {
                     DropChildren(fresh);
                     PutAndGet(fresh, written);
                 }},
                {"children held", [&] { PutAndGet(filled, written); }},
                {"bare creation of the three children by ProgID", [&] {
                     for (const wchar_t* progId : childProgIds)
                         Use(CreateByProgId(progId) ? 1u : 0u);
                 }}});
    return 0;
}
