#include "LogLine.h"

#include "tests/support/LogSession.h"
#include "tests/support/ProgramFolder.h"
#include "tests/support/Soak.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <memory>

// Several processes write to one log file. No line may be lost, torn or repeated.

namespace {

/// A running log_writer.
class WriterProcess {
public:
    WriterProcess(const std::string& name, int threads, int lines, int padding) {
        const std::string arguments = " " + name + " " + std::to_string(threads) + " " +
                                      std::to_string(lines) + " " + std::to_string(padding);
        std::wstring command = L"\"" + BesideProgram("log_writer.exe").wstring() + L"\"" +
                               std::wstring(arguments.begin(), arguments.end());
        STARTUPINFOW startup{};
        startup.cb = sizeof(startup);
        REQUIRE(CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                               &startup, &m_process));
    }
    WriterProcess(const WriterProcess&) = delete;
    WriterProcess& operator=(const WriterProcess&) = delete;
    ~WriterProcess() {
        Kill();
        CloseHandle(m_process.hThread);
        CloseHandle(m_process.hProcess);
    }

    /// Waits for the process. Returns its longest call in milliseconds.
    int LongestCall() const {
        REQUIRE(WaitForSingleObject(m_process.hProcess, 300000) == WAIT_OBJECT_0);
        DWORD code = 0;
        REQUIRE(GetExitCodeProcess(m_process.hProcess, &code));
        return static_cast<int>(code);
    }
    bool IsRunning() const { return WaitForSingleObject(m_process.hProcess, 0) == WAIT_TIMEOUT; }
    void Kill() const {
        TerminateProcess(m_process.hProcess, 1);
        WaitForSingleObject(m_process.hProcess, 60000);
    }

private:
    PROCESS_INFORMATION m_process{};
};

/// Starts all threads of all writers at the same time.
class StartingLine {
public:
    ~StartingLine() {
        CloseHandle(m_ready);
        CloseHandle(m_start);
    }
    void Start(int threads) {
        for (int i = 0; i < threads; ++i)
            REQUIRE(WaitForSingleObject(m_ready, 60000) == WAIT_OBJECT_0);
        SetEvent(m_start);
    }

private:
    HANDLE m_ready = CreateSemaphoreW(nullptr, 0, 10000, WritersReady);
    HANDLE m_start = CreateEventW(nullptr, TRUE, FALSE, WritersStart);
};

/// Durations of the calls of one or more rounds, in milliseconds.
struct CallTimes {
    int longest = 0;
    double meanLine = 0; ///< time of a round divided by its lines; slowest round
    double ratio = 0;    ///< longest call divided by one mean line per writer; worst round

    void AddRound(int longestCall, DWORD time, int writers, int lines) {
        const double mean = static_cast<double>(time) / lines;
        meanLine = std::max(meanLine, mean);
        longest = std::max(longest, longestCall);
        ratio = std::max(ratio, longestCall / (mean * writers));
    }
};

/// Counts each complete line of a writer in the texts. Everything else is a stranger.
struct FoundLines {
    std::map<std::wstring, int> marks;
    std::vector<std::wstring> strangers;

    void Add(const std::wstring& text) {
        std::size_t start = 0;
        for (std::size_t end; (end = text.find(L"\r\n", start)) != std::wstring::npos; start = end + 2)
            AddLine(text.substr(start, end - start));
        if (start != text.size())
            strangers.push_back(text.substr(start));
    }

private:
    void AddLine(const std::wstring& line) {
        const std::size_t quote = line.find(L'\'');
        const std::size_t last = line.rfind(L'\'');
        if (quote != std::wstring::npos && last != quote) {
            const std::wstring mark = line.substr(quote + 1, last - quote - 1);
            if (LineOfMark(mark) == line) {
                ++marks[mark];
                return;
            }
        }
        strangers.push_back(line);
    }
};

/// Checks that each line of a writer's thread was found once, and removes them.
void TakeEachOnce(FoundLines& found, const std::string& writer, int thread, int lines, int padding) {
    const std::string name = writer + "." + std::to_string(thread);
    for (int i = 0; i < lines; ++i) {
        const auto line = found.marks.find(LineMark(std::wstring(name.begin(), name.end()), i, padding));
        const int times = line == found.marks.end() ? 0 : line->second;
        if (times != 1)
            FAIL_CHECK("line " << i << " of " << name << " occurs " << times << " times");
        else
            found.marks.erase(line);
    }
}

/// A log_writer that is killed at a random time. The lines it wrote have no gap.
struct Victim {
    std::string name;
    int lines = 0; ///< complete lines

    /// The name of its only thread in the lines.
    std::wstring Thread() const { return std::wstring(name.begin(), name.end()) + L".0"; }
};

/// Starts it and kills it `delay` milliseconds after it starts to write.
void KillWhileItWrites(const Victim& victim, int padding, DWORD delay) {
    const HANDLE writing = CreateEventW(nullptr, TRUE, FALSE, victim.Thread().c_str());
    REQUIRE(writing != nullptr);
    WriterProcess process(victim.name, 1, 0, padding);
    CHECK(WaitForSingleObject(writing, 60000) == WAIT_OBJECT_0);
    CloseHandle(writing);
    Sleep(delay);
    process.Kill();
}

void TakeLinesOfVictim(FoundLines& found, Victim& victim, int padding) {
    const std::wstring writer = victim.Thread();
    for (;; ++victim.lines) {
        const auto line = found.marks.find(LineMark(writer, victim.lines, padding));
        if (line == found.marks.end())
            return;
        if (line->second != 1)
            FAIL_CHECK("line " << victim.lines << " of " << victim.name << " occurs " << line->second
                               << " times");
        found.marks.erase(line);
    }
}

/// Whether a stranger is the start of the line that the victim was writing when it was killed.
bool IsTornLineOf(const Victim& victim, const std::wstring& stranger, int padding) {
    return LineOfMark(LineMark(victim.Thread(), victim.lines, padding)).rfind(stranger, 0) == 0;
}

/// Splits torn lines of killed writers from the lines that the next writer appended directly to them.
FoundLines WithTornLinesApart(const FoundLines& found) {
    FoundLines apart{found.marks, {}};
    for (const std::wstring& stranger : found.strangers) {
        const std::size_t next = stranger.find(L"[CPrintJobImpl::put_Xml] ", 1);
        apart.strangers.push_back(stranger.substr(0, next));
        if (next != std::wstring::npos)
            apart.Add(stranger.substr(next) + L"\r\n");
    }
    return apart;
}

/// Runs one round of writers that start together.
void WriteTogether(int processes, int threads, int lines, int padding, CallTimes& times) {
    StartingLine line;
    std::vector<std::unique_ptr<WriterProcess>> writers;
    writers.reserve(static_cast<std::size_t>(processes));
    for (int i = 0; i < processes; ++i)
        writers.push_back(std::make_unique<WriterProcess>("p" + std::to_string(i), threads, lines, padding));
    line.Start(processes * threads);
    const DWORD start = GetTickCount();
    int longest = 0;
    for (const auto& writer : writers) {
        const int time = writer->LongestCall();
        REQUIRE(time >= 0);
        longest = std::max(longest, time);
    }
    times.AddRound(longest, GetTickCount() - start, processes * threads, processes * threads * lines);
}

/// One steady writer with two threads at a time, next to the victims.
constexpr int SteadyThreads = 2, SteadyLines = 100, KillPadding = 6000;

struct Killing {
    std::vector<std::string> steady;
    std::vector<Victim> victims;
    int longestCall = 0; ///< of the steady writers
};

Killing KillWriters(int kills) {
    Random random(4711);
    Killing killing;
    while (static_cast<int>(killing.victims.size()) < kills) {
        killing.steady.push_back("steady" + std::to_string(killing.steady.size()));
        WriterProcess writer(killing.steady.back(), SteadyThreads, SteadyLines, KillPadding);
        do {
            killing.victims.push_back({"victim" + std::to_string(killing.victims.size())});
            KillWhileItWrites(killing.victims.back(), KillPadding, random.Below(40));
        } while (writer.IsRunning() && static_cast<int>(killing.victims.size()) < kills);
        const int time = writer.LongestCall();
        REQUIRE(time >= 0);
        killing.longestCall = std::max(killing.longestCall, time);
    }
    return killing;
}

/// Removes at most one torn line per victim from the strangers.
void TakeTornLines(FoundLines& found, const std::vector<Victim>& victims) {
    for (const Victim& victim : victims) {
        const auto piece =
            std::find_if(found.strangers.begin(), found.strangers.end(),
                         [&](const std::wstring& line) { return IsTornLineOf(victim, line, KillPadding); });
        if (piece != found.strangers.end())
            found.strangers.erase(piece);
    }
}

} // namespace

TEST_CASE("Log_file_of_eight_processes_with_rotation_keeps_every_line_once") {
    // The lines fill between one and two files, so the single backup holds everything that is rotated.
    constexpr int processes = 8, threads = 16, lines = 5, padding = 2400;
    const int rounds = SoakCount("SOAK_LOG_ROUNDS", 2);
    int rotations = 0;
    CallTimes times;
    for (int round = 0; round < rounds; ++round) {
        LogSession session;
        session.Enable();
        session.Put(L"MaxFileSize", 1u);
        WriteTogether(processes, threads, lines, padding, times);
        FoundLines found;
        for (const std::wstring& path : {session.Path() + L".bak", session.Path()})
            if (FileExists(path))
                found.Add(FileText(path));
        rotations += FileExists(session.Path() + L".bak");
        for (int i = 0; i < processes; ++i)
            for (int thread = 0; thread < threads; ++thread)
                TakeEachOnce(found, "p" + std::to_string(i), thread, lines, padding);
        CHECK(found.marks.empty());
        CHECK(found.strangers.empty());
    }
    std::printf("%d rounds of %d processes with %d threads, %d lines each: %d rotations, longest call %d ms, "
                "mean line at most %.2f ms, longest call at most %.2f turns of all writers\n",
                rounds, processes, threads, lines, rotations, times.longest, times.meanLine, times.ratio);
    CHECK(rotations > 0);
    CHECK(times.ratio <= 3);
}

TEST_CASE("Log_file_of_killed_writers_keeps_the_lines_of_the_others") {
    constexpr int longestWait = 3000, patience = 3000; // wait for other writers; allowance for a busy machine
    LogSession session;
    session.Enable();
    Killing killing = KillWriters(SoakCount("SOAK_KILLS", 6));

    FoundLines found;
    found.Add(FileText(session.Path()));
    found = WithTornLinesApart(found);
    for (const std::string& name : killing.steady)
        for (int thread = 0; thread < SteadyThreads; ++thread)
            TakeEachOnce(found, name, thread, SteadyLines, KillPadding);
    int written = 0, writing = 0;
    for (Victim& victim : killing.victims) {
        TakeLinesOfVictim(found, victim, KillPadding);
        written += victim.lines;
        writing += victim.lines > 0;
    }
    CHECK(found.marks.empty());
    const std::size_t torn = found.strangers.size();
    TakeTornLines(found, killing.victims);
    CHECK(found.strangers.empty());
    std::printf(
        "%zu writers killed, %d of them after %d lines, with %zu torn lines; %zu others wrote %zu lines, "
        "longest call %d ms\n",
        killing.victims.size(), writing, written, torn, killing.steady.size(),
        killing.steady.size() * SteadyThreads * SteadyLines, killing.longestCall);
    CHECK(writing > 0);
    CHECK(killing.longestCall <= longestWait + patience);
}
