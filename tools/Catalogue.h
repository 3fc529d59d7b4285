#pragma once

#include "Findings.h"

#include <cstddef>
#include <string>

struct CatalogueResult {
    std::size_t problems;
    std::wstring summary; ///< the numbers of entries; empty if the file does not parse
};

/// Finds the mistakes of a catalogue, and prints them and a summary if `output` is not null. Throws ToolError
/// if the file is unreadable.
CatalogueResult LintCatalogueFile(const std::wstring& path, FindingsOutput* output);
