// A client that fills the log: log_writer <name> <threads> <lines> <padding>. 0 lines: writes until killed.
//
// Each thread puts texts into a print job, which refuses them and logs a part of the text: here
// "<name>.<thread>.<number>:" and up to <padding> letters. The exit code is the longest call in milliseconds;
// negative on failure.

#include "LogLine.h"

#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"

#include "JobObjects.h"

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

constexpr int Failed = -1;

struct Writer {
    std::wstring name;
    int lines;
    int padding;
    int longestCall;
};

/// Writes one line. Returns its time in milliseconds, or `Failed`.
int WriteLine(IPrintJob* job, const std::wstring& mark) {
    const UniqueBstr xml(L"<PrintJob Version=\"7.26\"><LogTarget Type=\"" + mark + L"\"/></PrintJob>");
    const DWORD start = GetTickCount();
    const HRESULT result = job->put_Xml(xml.Get());
    const DWORD end = GetTickCount();
    return result == E_FAIL ? static_cast<int>(end - start) : Failed;
}

/// Waits for the common start, if there is one.
void WaitForStart() {
    const HANDLE ready = OpenSemaphoreW(SEMAPHORE_MODIFY_STATE, FALSE, WritersReady);
    const HANDLE start = OpenEventW(SYNCHRONIZE, FALSE, WritersStart);
    if (ready && start) {
        ReleaseSemaphore(ready, 1, nullptr);
        WaitForSingleObject(start, INFINITE);
    }
    CloseHandle(ready);
    CloseHandle(start);
}

/// Sets the event with the writer's name, which a waiting test has created.
void SignalWriting(const std::wstring& name) {
    if (const HANDLE event = OpenEventW(EVENT_MODIFY_STATE, FALSE, name.c_str())) {
        SetEvent(event);
        CloseHandle(event);
    }
}

int WriteLines(const Writer& writer) {
    ComPtr<IPrintJob> job;
    if (FAILED(CoCreateInstance(__uuidof(PrintJob), nullptr, CLSCTX_INPROC_SERVER, __uuidof(IPrintJob),
                                job.PutVoid())))
        return Failed;
    WaitForStart();
    SignalWriting(writer.name);
    int longest = 0;
    for (int i = 0; writer.lines == 0 || i < writer.lines; ++i) {
        const int time = WriteLine(job.Get(), LineMark(writer.name, i, writer.padding));
        if (time == Failed)
            return Failed;
        longest = std::max(longest, time);
    }
    SetErrorInfo(0, nullptr);
    return longest;
}

DWORD WINAPI RunWriter(void* argument) {
    Writer& writer = *static_cast<Writer*>(argument);
    if (FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)))
        return 1;
    writer.longestCall = WriteLines(writer);
    CoUninitialize();
    return 0;
}

std::wstring Wide(const char* text) {
    return std::wstring(text, text + std::char_traits<char>::length(text));
}

int Number(const char* text) {
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5)
        return Failed;
    std::vector<Writer> writers(static_cast<std::size_t>(Number(argv[2])));
    std::vector<HANDLE> threads;
    for (std::size_t i = 0; i < writers.size(); ++i) {
        writers[i] = {Wide(argv[1]) + L"." + std::to_wstring(i), Number(argv[3]), Number(argv[4]), Failed};
        threads.push_back(CreateThread(nullptr, 0, RunWriter, &writers[i], 0, nullptr));
    }
    int longest = writers.empty() ? Failed : 0;
    for (std::size_t i = 0; i < writers.size(); ++i) {
        if (!threads[i] || WaitForSingleObject(threads[i], INFINITE) != WAIT_OBJECT_0 ||
            writers[i].longestCall == Failed)
            return Failed;
        longest = std::max(longest, writers[i].longestCall);
    }
    return longest;
}
