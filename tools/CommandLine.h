#pragma once

#include "Commands.h"

#include <string>
#include <vector>

/// Parses the arguments, without the program's name, and runs the command. Throws ToolError.
ExitCode RunCommandLine(const std::vector<std::wstring>& arguments);
