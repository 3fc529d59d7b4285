#pragma once

#include <cstddef>
#include <string>

/// Prints the findings and a summary. Returns the number of findings. Throws ToolError if the file is
/// unreadable.
std::size_t LintCatalogueFile(const std::wstring& path);
