#pragma once

#include <string>

/// Reads "JobAttributes.xml", which lies beside the module, whole and decoded. Returns false after logging
/// why it could not. Linked apart from the catalogue, so that tests can supply a text of their own.
bool ReadCatalogueFile(std::wstring& text);
