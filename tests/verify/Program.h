#pragma once

#include <string>

#include <windows.h>

/// How to run a program.
struct Program {
    std::wstring commandLine;
    std::wstring folder;      ///< where it runs
    std::wstring environment; ///< "NAME=value", or empty
    std::wstring outputFile;  ///< new file for its output and error output
    DWORD seconds;            ///< its time limit
};

/// How a program ended.
struct Ending {
    DWORD startError = 0; ///< why it could not be started
    bool timedOut = false;
    std::wstring
        leftProgram; ///< a program that it had started and that was still running; not one of the system
    DWORD exitCode = 0;
    std::string output;

    /// What is wrong compared with this exit code; empty if nothing is.
    std::wstring Problem(DWORD expectedExitCode) const;
};

/// Runs a program to its end, and ends whatever it has started.
Ending Run(const Program& program);
