#pragma once

#include "FaultInjector.h"

#include <string>
#include <vector>

// Every function that the library imports stands in one of three tables: those that can fail, those that
// cannot, and those that are never called.

/// Leads the imports of a module that has just been mapped through the tables.
void LeadImportsThroughTables(HMODULE library);

/// The functions that a module imports, by name.
std::vector<std::string> ImportsOf(HMODULE library);

struct TableEntry {
    std::string name;
    bool fails;
    std::string reason; ///< why it does not fail
};
std::vector<TableEntry> TableEntries();
