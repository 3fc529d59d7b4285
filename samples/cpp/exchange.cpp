// Two processes that exchange jobs as XML. The program is the agent: it makes print jobs from page counter
// reports. It starts itself again as the accountant and sends it the XML of each job through a pipe. The
// accountant answers with the database row for the job, and the agent compares it with its own numbers.
//
//   exchange
//
// The library must be registered (regsvr32 Tarnwick.dll). Exit code: 0, or 1 with a message if a step fails.

#include <JobObjects.hpp>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

// --- Messages through a pipe: the length in bytes, then UTF-8 ---

void Send(HANDLE pipe, std::wstring_view text) {
    std::string bytes(3 * text.size(), '\0');
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
    const auto length = static_cast<DWORD>(size);
    DWORD written = 0;
    if (!WriteFile(pipe, &length, sizeof(length), &written, nullptr) ||
        !WriteFile(pipe, bytes.data(), length, &written, nullptr))
        throw std::runtime_error("the other process does not listen");
}

bool ReadAll(HANDLE pipe, void* target, DWORD size) {
    auto* place = static_cast<char*>(target);
    for (DWORD read = 0; size > 0; size -= read, place += read)
        if (!ReadFile(pipe, place, size, &read, nullptr) || read == 0)
            return false;
    return true;
}

/// False if the other side has closed the pipe.
bool Receive(HANDLE pipe, std::wstring& text) {
    constexpr DWORD longest = 16 * 1024 * 1024;
    DWORD length = 0;
    if (!ReadAll(pipe, &length, sizeof(length)) || length > longest)
        return false;
    std::string bytes(length, '\0');
    if (!ReadAll(pipe, bytes.data(), length))
        return false;
    text.resize(length);
    text.resize(static_cast<std::size_t>(MultiByteToWideChar(
        CP_UTF8, 0, bytes.data(), static_cast<int>(length), text.data(), static_cast<int>(length))));
    return true;
}

// --- The accountant ---

/// "owner|copy lines|originals|copies|language|finishing": a database row.
std::wstring DatabaseRow(const std::wstring& xml) {
    const auto job = JobObjects::PrintJob::Create();
    job.Xml(xml);
    const auto contents = job.JobContents();
    std::wstring row = job.UserName() + L"|" + contents.DBCopyLines();
    for (const LONG number :
         {contents.JobOriginals(), contents.JobCopies(), contents.DBPdl(), contents.DBFinishing()})
        row += L"|" + std::to_wstring(number);
    return row;
}

void RunAccountant() {
    std::wstring xml;
    while (Receive(GetStdHandle(STD_INPUT_HANDLE), xml))
        Send(GetStdHandle(STD_OUTPUT_HANDLE), DatabaseRow(xml));
}

// --- The agent ---

struct Report {
    const wchar_t* document;
    const wchar_t* user;
    const wchar_t* words; ///< what the page counter found: paper, sides, colours, language, finishing
    LONG originals, copies, pages, sheets;
    const wchar_t* expectedRow; ///< with the codes of the delivered catalogue
};

const Report Reports[] = {
    {L"Quarterly figures.docx", L"a.berg", L"A4,Duplex,B&W,PostScript", 12, 2, 24, 12,
     L"a.berg|1,24,0,12,6|12|2|6|0"},
    {L"Summer <catalogue>.pdf", L"m.lindqvist", L"A3,Duplex,Color,PCL6,Staple", 32, 10, 320, 80,
     L"m.lindqvist|4,0,320,80,10|32|10|5|1"},
    {L"\u65e5\u5831.txt", L"j\u00fcrgen", L"Letter,Simplex,B&W,EMF", 2, 1, 2, 2,
     L"j\u00fcrgen|2,2,0,2,5|2|1|10|0"},
};

std::wstring XmlOf(const Report& report) {
    const auto job = JobObjects::PrintJob::Create();
    job.JobName(report.document);
    job.UserName(report.user);
    // A new job already has contents; fill them in place.
    job.JobContents().GenerateContentsFromPageCounterInfo(report.words, report.originals, report.copies,
                                                          report.pages, report.sheets);
    return job.Xml();
}

/// The second process, with the agent's ends of the two pipes.
struct Accountant {
    HANDLE process = nullptr, toAccountant = nullptr, fromAccountant = nullptr;
};

Accountant StartAccountant() {
    SECURITY_ATTRIBUTES inherited{sizeof(inherited), nullptr, TRUE};
    Accountant accountant;
    HANDLE itsInput = nullptr, itsOutput = nullptr;
    wchar_t program[MAX_PATH];
    if (!CreatePipe(&itsInput, &accountant.toAccountant, &inherited, 0) ||
        !CreatePipe(&accountant.fromAccountant, &itsOutput, &inherited, 0) ||
        !GetModuleFileNameW(nullptr, program, MAX_PATH))
        throw std::runtime_error("no pipes");
    // The child must not inherit our ends, or it would never see the end of its input.
    SetHandleInformation(accountant.toAccountant, HANDLE_FLAG_INHERIT, 0);
    SetHandleInformation(accountant.fromAccountant, HANDLE_FLAG_INHERIT, 0);

    STARTUPINFOW start{};
    start.cb = sizeof(start);
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = itsInput;
    start.hStdOutput = itsOutput;
    start.hStdError = GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    std::wstring commandLine = L"\"" + std::wstring(program) + L"\" accountant";
    const BOOL started = CreateProcessW(program, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        nullptr, &start, &process);
    CloseHandle(itsInput);
    CloseHandle(itsOutput);
    if (!started)
        throw std::runtime_error("the second process does not start");
    CloseHandle(process.hThread);
    accountant.process = process.hProcess;
    return accountant;
}

void RunAgent() {
    const Accountant accountant = StartAccountant();
    std::printf("agent %lu, accountant %lu\n", GetCurrentProcessId(), GetProcessId(accountant.process));
    for (const Report& report : Reports) {
        Send(accountant.toAccountant, XmlOf(report));
        std::wstring row;
        if (!Receive(accountant.fromAccountant, row))
            throw std::runtime_error("the accountant gave no answer");
        if (row != report.expectedRow)
            throw JobObjects::Error(E_UNEXPECTED, L"the accountant stored '" + row + L"', not '" +
                                                      report.expectedRow + L"'");
    }
    CloseHandle(accountant.toAccountant); // the end, for the accountant
    DWORD exitCode = 1;
    WaitForSingleObject(accountant.process, INFINITE);
    GetExitCodeProcess(accountant.process, &exitCode);
    if (exitCode != 0)
        throw std::runtime_error("the accountant failed");
    CloseHandle(accountant.fromAccountant);
    CloseHandle(accountant.process);
    std::printf("All %u jobs arrived.\n", static_cast<unsigned>(std::size(Reports)));
}

} // namespace

int main(int argc, char** argv) {
    try {
        const JobObjects::Apartment apartment;
        if (argc > 1 && std::strcmp(argv[1], "accountant") == 0)
            RunAccountant();
        else
            RunAgent();
        return 0;
    } catch (const std::exception& failure) { // JobObjects::Error is one
        std::fprintf(stderr, "Failed: %s\n", failure.what());
        return 1;
    }
}
