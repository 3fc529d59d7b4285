#pragma once

#include "Machine.h"
#include "Program.h"
#include "Report.h"
#include "TestList.h"

#include <atomic>
#include <filesystem>
#include <regex>

/// Set when the user interrupts the kit: the remaining tests are left out.
extern std::atomic<bool> interrupted;

struct Folders {
    std::filesystem::path kit;
    std::filesystem::path work; ///< for everything that is written
};

/// Runs the tests of one platform.
class TestRunner {
public:
    /// Tests whose name, such as "x86 com_tests", does not contain a match of `only` do not run. `refusal`
    /// says why the machine must not be changed; it is empty if it may.
    TestRunner(Platform platform, Folders folders, const std::regex& only, std::string refusal,
               Report& report);

    void RunAll();

private:
    void RunPart(const Part& part);
    /// A step that brings the machine into the state of a part, or back. False if it fails.
    bool RunStep(const Part& part, const char* step, const std::string& command, bool registeredAfterwards);
    void RunTest(const Test& test);
    void RunCases(const Test& test, Row& row);
    CaseResult RunCase(const Test& test, const std::string& name);
    CaseResult RunWhole(const Test& test);
    void LeaveOut(const Test& test, const std::string& reason);
    /// Why the test cannot run on this machine; empty if it can.
    std::string Obstacle(const Test& test) const;

    Ending RunCommand(const Test& test, const std::string& arguments);
    std::wstring Expand(const std::string& text) const;
    std::string FullName(const std::string& name) const;
    bool IsSelected(const std::string& name) const;

    Platform m_platform;
    Folders m_folders;
    const std::regex& m_only;
    std::string m_refusal;
    Report& m_report;
    TestList m_list;
};
