#pragma once

#include <span>
#include <string>

/// What the tool ends with.
enum ExitCode : int {
    ExitOk = 0,       ///< nothing is wrong
    ExitFindings = 1, ///< something is wrong with what was looked at
    ExitUsage = 2,    ///< the command line is not understood
    ExitCannotRun = 3 ///< the command could not do its work
};

using Arguments = std::span<const std::wstring>;

/// Runs a command on several files, on the others too when it cannot read one. Returns the worst result.
ExitCode ForEachFile(Arguments files, ExitCode (*command)(const std::wstring& path));

/// Is the library registered, which file is it, and does it work?
ExitCode Check(Arguments arguments);
/// A record's XML as a table.
ExitCode Show(Arguments arguments);
/// Does the library read records' XML, and what does it not keep?
ExitCode Validate(Arguments arguments);
/// Are catalogues sound?
ExitCode Catalogue(Arguments arguments);
