#pragma once

#include "FaultInjector.h"

#include <string>
#include <vector>

// Each function that the library imports is in one of three tables: fallible, infallible or never called.

/// Redirects the imports of a newly mapped module through the tables.
void LeadImportsThroughTables(HMODULE library);

/// Names of the functions that a module imports.
std::vector<std::string> ImportsOf(HMODULE library);

struct TableEntry {
    std::string name;
    bool fails;
    std::string reason; ///< why it does not fail; empty if it does
};
std::vector<TableEntry> TableEntries();
