#pragma once

#include "Commands.h"

#include <string>

/// Prints the codes and words of a catalogue as SQL for "sqlite", "postgresql" or "sqlserver", or its
/// mistakes if it has any. Throws ToolError if the dialect is unknown or the file is unreadable.
ExitCode ShowCatalogueSql(const std::wstring& path, const std::wstring& dialect);
