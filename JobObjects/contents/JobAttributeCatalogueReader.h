#pragma once

#include "JobAttributeCatalogue.h"

#include <string_view>

/// Fills the tables from the catalogue file's text, section by section in a fixed order. A missing section is
/// logged and ends the read with false: its table is empty, later tables are unchanged.
bool ReadCatalogue(std::wstring_view text, CatalogueTables& tables);
