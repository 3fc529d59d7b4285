#include "TestRunner.h"

#include "tests/support/Wine.h"
#include "tools/Utf8.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <utility>

std::atomic<bool> interrupted = false;

namespace {

constexpr DWORD StepSeconds = 300;

std::string WithoutCarriageReturns(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
    return text;
}

std::string LastLine(const std::string& output) {
    const std::string text = WithoutCarriageReturns(output);
    const std::size_t end = text.find_last_not_of('\n');
    if (end == std::string::npos)
        return {};
    const std::size_t before = text.rfind('\n', end);
    const std::size_t start = before == std::string::npos ? 0 : before + 1;
    return text.substr(start, end + 1 - start);
}

CaseResult Judge(const std::string& name, const Ending& ending, DWORD exitCode, bool outputIsRight,
                 const char* outputProblem) {
    std::string problem = Utf8(ending.Problem(exitCode));
    if (problem.empty() && !outputIsRight)
        problem = outputProblem;
    if (problem.empty())
        return {name, Result::Passed, {}, {}};
    return {name, Result::Failed, problem, ending.output};
}

CaseResult JudgeLastLine(const std::string& name, const Ending& ending, DWORD exitCode,
                         const std::string& pattern) {
    const bool matches = std::regex_match(LastLine(ending.output), std::regex(pattern));
    return Judge(name, ending, exitCode, matches, "ended without its closing line");
}

/// The names that a Catch program lists, one a line; empty if the list broke off.
std::vector<std::string> CaseNames(const std::string& listing) {
    const std::string text = WithoutCarriageReturns(listing);
    const std::regex name("[A-Za-z0-9_]+");
    if (!std::regex_match(LastLine(text), name))
        return {};
    return {std::sregex_token_iterator(text.begin(), text.end(), name), {}};
}

std::string FileText(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Counts the seconds of a row.
class Stopwatch {
public:
    explicit Stopwatch(Row& row) : m_row(row) {}
    Stopwatch(const Stopwatch&) = delete;
    Stopwatch& operator=(const Stopwatch&) = delete;
    ~Stopwatch() { m_row.seconds = (GetTickCount() - m_start + 500) / 1000; }

private:
    Row& m_row;
    DWORD m_start = GetTickCount();
};

} // namespace

TestRunner::TestRunner(Platform platform, Folders folders, const std::regex& only, std::string refusal,
                       Report& report)
    : m_platform(std::move(platform)),
      m_folders(std::move(folders)),
      m_only(only),
      m_refusal(std::move(refusal)),
      m_report(report),
      m_list(ReadTestList(m_folders.kit / m_platform.name / "tests.txt")) {
}

void TestRunner::RunAll() {
    for (const Part& part : m_list.parts)
        RunPart(part);
    Row others{FullName("tests that are not in the kit"), {}};
    for (const LeftOut& each : m_list.leftOut)
        if (each.isTest && IsSelected(each.name))
            others.cases.push_back({each.name, Result::LeftOut, each.reason, {}});
    if (!others.cases.empty())
        m_report.AddRow(std::move(others));
}

void TestRunner::RunPart(const Part& part) {
    const bool isSelected = std::any_of(part.tests.begin(), part.tests.end(),
                                        [this](const Test& test) { return IsSelected(test.name); });
    if (!isSelected)
        return;
    std::string refusal = part.changesMachine ? m_refusal : "";
    const bool changes = refusal.empty() && !part.setUp.empty();
    if (changes && !RunStep(part, "set-up", part.setUp, true))
        refusal = "the set-up failed";
    for (const Test& test : part.tests)
        if (refusal.empty())
            RunTest(test);
        else
            LeaveOut(test, refusal);
    if (changes)
        RunStep(part, "clean-up", part.cleanUp, false);
}

bool TestRunner::RunStep(const Part& part, const char* step, const std::string& command,
                         bool registeredAfterwards) {
    Row row{FullName(part.name + ", " + step), {}};
    {
        const Stopwatch stopwatch(row);
        const Ending ending = RunCommand({"", Expect::Line, "", 0, StepSeconds, "", "{work}", command}, "");
        const bool isRegistered = !RegisteredLibrary(m_platform).empty();
        row.cases.push_back(
            Judge("", ending, 0, isRegistered == registeredAfterwards,
                  isRegistered ? "the library is still registered" : "the library is not registered"));
    }
    const bool passed = row.Count(Result::Failed) == 0;
    m_report.AddRow(std::move(row));
    return passed;
}

void TestRunner::RunTest(const Test& test) {
    if (!IsSelected(test.name))
        return;
    if (const std::string obstacle = Obstacle(test); !obstacle.empty())
        return LeaveOut(test, obstacle);
    Row row{FullName(test.name), {}};
    {
        const Stopwatch stopwatch(row);
        if (test.expect == Expect::Cases)
            RunCases(test, row);
        else
            row.cases.push_back(RunWhole(test));
    }
    m_report.AddRow(std::move(row));
}

std::string TestRunner::Obstacle(const Test& test) const {
    if (interrupted)
        return "interrupted";
    if (test.command.find(".vbs") != std::string::npos && !HasScriptEngine(m_platform, L"VBScript"))
        return "this Windows has no VBScript";
    if (test.command.find(".js") != std::string::npos && !HasScriptEngine(m_platform, L"JScript"))
        return "this Windows has no JScript";
    return {};
}

void TestRunner::LeaveOut(const Test& test, const std::string& reason) {
    if (IsSelected(test.name))
        m_report.AddRow({FullName(test.name), {{"", Result::LeftOut, reason, {}}}});
}

void TestRunner::RunCases(const Test& test, Row& row) {
    const Ending listing = RunCommand(test, test.expectation);
    const std::vector<std::string> names = CaseNames(listing.output);
    // Version 2 of Catch returns the number of names, version 3 returns 0.
    const DWORD expected =
        listing.exitCode == 0 ? 0 : static_cast<DWORD>(std::min<std::size_t>(names.size(), 255));
    CaseResult list = Judge("list of its test cases", listing, expected, !names.empty(), "broke off");
    if (list.result == Result::Failed)
        return row.cases.push_back(std::move(list));
    for (const std::string& name : names)
        row.cases.push_back(RunCase(test, name));
}

CaseResult TestRunner::RunCase(const Test& test, const std::string& name) {
    if (const LeftOut* const leftOut = m_list.FindLeftOut(name, RunsUnderWine()))
        return {name, Result::LeftOut, leftOut->reason, {}};
    if (interrupted)
        return {name, Result::LeftOut, "interrupted", {}};
    return JudgeLastLine(name, RunCommand(test, name), test.exitCode, m_list.caseClosingLine);
}

CaseResult TestRunner::RunWhole(const Test& test) {
    const Ending ending = RunCommand(test, "");
    if (test.expect == Expect::Line)
        return JudgeLastLine("", ending, test.exitCode, test.expectation);
    const std::string expected = WithoutCarriageReturns(FileText(Expand(test.expectation)));
    return Judge("", ending, test.exitCode,
                 !expected.empty() && WithoutCarriageReturns(ending.output) == expected,
                 "its output differs from the expected one");
}

Ending TestRunner::RunCommand(const Test& test, const std::string& arguments) {
    const std::filesystem::path output = m_folders.work / "output.txt";
    const std::string command = arguments.empty() ? test.command : test.command + " " + arguments;
    return Run(
        {Expand(command), Expand(test.folder), Expand(test.environment), output.wstring(), test.seconds});
}

std::wstring TestRunner::Expand(const std::string& text) const {
    const std::pair<std::wstring, std::wstring> values[] = {
        {L"{here}", (m_folders.kit / m_platform.name).wstring()},
        {L"{kit}", m_folders.kit.wstring()},
        {L"{system}", m_platform.systemFolder},
        {L"{work}", m_folders.work.wstring()},
    };
    std::wstring expanded = Wide(text);
    for (const auto& [name, value] : values)
        for (std::size_t at = 0; (at = expanded.find(name, at)) != std::wstring::npos; at += value.size())
            expanded.replace(at, name.size(), value);
    return expanded;
}

std::string TestRunner::FullName(const std::string& name) const {
    return std::string(m_platform.name) + " " + name;
}

bool TestRunner::IsSelected(const std::string& name) const {
    return std::regex_search(FullName(name), m_only);
}
