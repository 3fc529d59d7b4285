#include "FaultInjector.h"
#include "ImportTables.h"

#include "tests/support/Library.h"

#include <catch2/catch.hpp>

#include <set>
#include <string>
#include <vector>

// The tables classify every import of the library.

TEST_CASE("FaultTables_contain_every_import_of_the_library") {
    FaultInjector::Watch();
    const Library library;
    std::set<std::string> known, fallible;
    for (const TableEntry& entry : TableEntries()) {
        INFO(entry.name);
        CHECK(known.insert(entry.name).second);
        CHECK(entry.reason.empty() == entry.fails);
        if (entry.fails)
            fallible.insert(entry.name);
    }
    const std::vector<std::string> imports = ImportsOf(library.Module());
    REQUIRE(imports.size() > 50);
    std::vector<std::string> unknown;
    for (const std::string& import : imports) {
        if (!known.contains(import))
            unknown.push_back(import);
        fallible.erase(import);
    }
    CHECK(unknown == std::vector<std::string>());
    CHECK(fallible == std::set<std::string>()); // no longer imported
}
