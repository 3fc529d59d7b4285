#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <windows.h>

// The list of the tests of one platform, tests.txt, which make_kit.py writes. Each line has fields separated
// by tabs.

/// What a test's output must be.
enum class Expect {
    Cases, ///< a Catch program, which runs once for each of its test cases
    Line,  ///< the last line matches a regular expression
    File,  ///< equal to a file
};

struct Test {
    std::string name;
    Expect expect;
    std::string expectation; ///< regular expression or file; for Cases the options that list them
    DWORD exitCode;
    DWORD seconds;
    std::string environment;
    std::string folder;
    std::string command;
};

/// A test or a test case that the kit does not run.
struct LeftOut {
    std::string name;
    bool isTest;        ///< not a test case
    bool underWineOnly; ///< it runs on Windows
    std::string reason;
};

/// Tests that share a state of the machine.
struct Part {
    std::string name;
    bool changesMachine; ///< and so needs an administrator
    std::string setUp;   ///< command, or empty
    std::string cleanUp; ///< command, or empty
    std::vector<Test> tests;
};

struct TestList {
    std::string caseClosingLine; ///< regular expression for the last line of a test case
    std::vector<Part> parts;
    std::vector<LeftOut> leftOut;

    /// The entry of this test case; null if it runs.
    const LeftOut* FindLeftOut(const std::string& testCase, bool underWine) const;
};

/// Throws std::runtime_error if the file is unreadable or malformed.
TestList ReadTestList(const std::filesystem::path& file);
