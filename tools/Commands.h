#pragma once

#include <span>
#include <string>

enum ExitCode : int {
    ExitOk = 0,       ///< no problem found
    ExitFindings = 1, ///< problems found
    ExitUsage = 2,    ///< invalid command line
    ExitCannotRun = 3 ///< the command failed
};

using Arguments = std::span<const std::wstring>;

/// Runs a command on each file, even after one fails. Returns the worst result.
ExitCode ForEachFile(Arguments files, ExitCode (*command)(const std::wstring& path));

/// Checks that the library is registered and works.
ExitCode Check(Arguments arguments);
/// Shows a record's XML as a table.
ExitCode Show(Arguments arguments);
/// Checks that the library reads records, and shows what it changes.
ExitCode Validate(Arguments arguments);
/// Finds mistakes in catalogues.
ExitCode Catalogue(Arguments arguments);
