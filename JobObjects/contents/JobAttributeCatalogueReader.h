#pragma once

#include "JobAttributeCatalogue.h"

#include <string_view>

/// Fills the tables from the catalogue file's text. The sections of the file are read in a fixed order; a
/// section that is missing is logged and ends the reading with false: the tables of the sections before it
/// are new, its own is empty, the later ones are unchanged.
bool ReadCatalogue(std::wstring_view text, CatalogueTables& tables);
