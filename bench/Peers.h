#pragma once

#include "Records.h"

#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <string>
#include <string_view>

// The same work by other libraries: a print job record's document to its values and back.

namespace PugiPeer {
JobValues Read(std::wstring_view text);
std::wstring Write(const JobValues& values);
/// Parses into a new document; whether it took the text.
bool Parse(std::wstring_view text);
/// Elements in document order, for a comparison with the parser's positions.
std::size_t CountElements(std::wstring_view text);
void ReadCatalogue(std::wstring_view text, CatalogueTables& tables);
} // namespace PugiPeer

namespace RapidPeer {
JobValues Read(std::wstring_view text);
bool Parse(std::wstring_view text);
} // namespace RapidPeer
