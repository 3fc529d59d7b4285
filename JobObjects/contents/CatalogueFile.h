#pragma once

#include <string>

/// Reads and decodes "JobAttributes.xml" from the module's folder. Logs a failure and returns false. Linked
/// separately from the catalogue, so that tests can supply another text.
bool ReadCatalogueFile(std::wstring& text);
