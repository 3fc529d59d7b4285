#pragma once

#include "Rows.h"

#include <functional>
#include <string>
#include <vector>

enum ExitCode : int {
    ExitOk = 0,        ///< no problem found
    ExitFindings = 1,  ///< problems found
    ExitUsage = 2,     ///< invalid command line
    ExitCannotRun = 3, ///< the command failed
    ExitRefused = 4,   ///< the library refuses the record
    ExitNoRecord = 5   ///< not a record: malformed, or another root element
};

/// An invalid command line.
struct UsageError {
    std::wstring message;
};

struct Options {
    Format format = Format::Text;
    bool listDefaults = false;
    bool stopsAtProblem = false;
    bool continues = false;
    std::wstring output; ///< file or folder; empty for standard output
    std::wstring table;
    std::wstring dialect;
    std::vector<std::wstring> files; ///< wildcards are expanded
};

/// The code that describes both outcomes.
ExitCode Worse(ExitCode a, ExitCode b);

/// Runs a command on each file, even after one fails. Returns the worst result.
ExitCode ForEachFile(const Options& options,
                     const std::function<ExitCode(const std::wstring& path)>& command);

/// Checks that the library can be used and works.
ExitCode Check(const Options& options);
/// Shows records.
ExitCode Show(const Options& options);
/// Checks that the library reads records, and shows what it changes.
ExitCode Validate(const Options& options);
/// Finds mistakes in catalogues.
ExitCode Catalogue(const Options& options);
/// Writes records as tables.
ExitCode Export(const Options& options);
/// Writes a page with the numbers of records.
ExitCode Report(const Options& options);
