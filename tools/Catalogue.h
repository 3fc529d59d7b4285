#pragma once

#include <cstddef>
#include <string>

/// Shows what is wrong with a catalogue file, and how much it holds. Returns the number of findings. Throws
/// ToolError when the file cannot be read.
std::size_t LintCatalogueFile(const std::wstring& path);
