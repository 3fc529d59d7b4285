#include "Apartments.h"

#include "tests/support/ComClient.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

// Several apartments that work at the same time. Assertions are not thread-safe, so the threads report
// failures by exceptions. The environment variable APARTMENT_ROUNDS sets the number of rounds per thread.

namespace {

constexpr int WorkerCount = 8;

int Rounds() {
    const char* text = std::getenv("APARTMENT_ROUNDS");
    return text ? static_cast<int>(std::strtol(text, nullptr, 10)) : 60;
}

void Expect(bool condition, const char* what) {
    if (!condition)
        throw std::runtime_error(what);
}

ComPtr<IPrintJob> NewJob() {
    ComPtr<IPrintJob> job;
    Expect(SUCCEEDED(CoCreateInstance(__uuidof(PrintJob), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IPrintJob),
                                      job.PutVoid())),
           "creation");
    return job;
}

std::wstring XmlOf(IPrintJob* job) {
    UniqueBstr xml;
    Expect(job->get_Xml(xml.Put()) == S_OK, "get_Xml");
    return std::wstring(xml.View());
}

void FillJob(IPrintJob* job, const std::wstring& user, long pages) {
    Expect(job->put_UserName(UniqueBstr(user).Get()) == S_OK, "put_UserName");
    Expect(job->put_JobSize(pages) == S_OK, "put_JobSize");
    ComPtr<IJobContents> contents;
    Expect(job->get_JobContents(contents.Put()) == S_OK, "get_JobContents");
    const UniqueBstr words(L"A4,Simplex,B&W");
    Expect(contents->GenerateContentsFromPageCounterInfo(words.Get(), pages, 1, pages, pages) == S_OK,
           "GenerateContentsFromPageCounterInfo");
}

void CheckCopy(IPrintJob* copy, const std::wstring& user, long pages) {
    UniqueBstr name;
    Expect(copy->get_UserName(name.Put()) == S_OK && name.View() == user, "the user's name in the copy");
    long size = 0;
    Expect(copy->get_JobSize(&size) == S_OK && size == pages, "the size in the copy");
    ComPtr<IJobContents> contents;
    Expect(copy->get_JobContents(contents.Put()) == S_OK, "the copy's contents");
    long total = 0;
    Expect(contents->get_TotalPages(&total) == S_OK && total == pages, "the total pages in the copy");
}

void CheckOwnError(IPrintJob* job, const std::wstring& type) {
    const UniqueBstr xml(L"<PrintJob Version=\"7.26\"><LogTarget Type=\"" + type + L"\"/></PrintJob>");
    Expect(job->put_Xml(xml.Get()) == E_FAIL, "put_Xml of an unknown log target");
    ComPtr<IErrorInfo> info;
    Expect(GetErrorInfo(0, info.Put()) == S_OK, "error information");
    UniqueBstr description;
    Expect(info->GetDescription(description.Put()) == S_OK, "GetDescription");
    Expect(description.View() == L"The PrintJob LogTargetType '" + type + L"' is not supported.",
           "the description of the thread's own failure");
}

void WorkOnJobs(int worker) {
    const int rounds = Rounds();
    for (int round = 0; round < rounds; ++round) {
        const std::wstring user = L"worker " + std::to_wstring(worker) + L"." + std::to_wstring(round);
        const long pages = worker * 1000 + round + 1;
        const auto job = NewJob();
        FillJob(job.Get(), user, pages);
        const std::wstring xml = XmlOf(job.Get());
        const auto copy = NewJob();
        Expect(copy->put_Xml(UniqueBstr(xml).Get()) == S_OK, "put_Xml");
        CheckCopy(copy.Get(), user, pages);
        Expect(XmlOf(copy.Get()) == xml, "the copy's Xml");
        CheckOwnError(copy.Get(), user);
    }
}

struct Worker {
    int number;
    HANDLE start;
    std::string result;
};

DWORD WINAPI RunWorker(void* argument) {
    Worker& worker = *static_cast<Worker*>(argument);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        worker.result = "CoInitializeEx";
        return 1;
    }
    WaitForSingleObject(worker.start, INFINITE);
    try {
        WorkOnJobs(worker.number);
        worker.result = "done";
    } catch (const std::exception& failure) {
        worker.result = failure.what();
    }
    CoUninitialize();
    return 0;
}

} // namespace

TEST_CASE("Eight_parallel_stas_with_separate_objects_do_not_interfere") {
    auto held = CreatePrintJob(); // keeps the library loaded for AskLibraryToUnload
    const HANDLE start = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    REQUIRE(start != nullptr);
    Worker workers[WorkerCount];
    HANDLE threads[WorkerCount];
    for (int i = 0; i < WorkerCount; ++i) {
        workers[i] = {i, start, "not run"};
        threads[i] = CreateThread(nullptr, 0, RunWorker, &workers[i], 0, nullptr);
        REQUIRE(threads[i] != nullptr);
    }
    SetEvent(start);
    for (int i = 0; i < WorkerCount; ++i) {
        WaitAndAnswerCalls(threads[i]);
        CloseHandle(threads[i]);
        INFO("worker " << i);
        CHECK(workers[i].result == "done");
    }
    CloseHandle(start);

    CHECK_HR(AskLibraryToUnload(), S_FALSE);
    held = ComPtr<IPrintJob>();
    REQUIRE(GetModuleHandleW(L"Tarnwick.dll") != nullptr);
    CHECK_HR(AskLibraryToUnload(), S_OK);
}
