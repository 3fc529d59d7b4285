#pragma once

#include "Records.h"

#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <string>
#include <string_view>

// The same work with other libraries: from the document of a print job to its values and back.

namespace PugiPeer {
JobValues Read(std::wstring_view text);
std::wstring Write(const JobValues& values);
/// Parses into a new document; false if the text is refused.
bool Parse(std::wstring_view text);
/// Number of elements, to compare with the parser's.
std::size_t CountElements(std::wstring_view text);
void ReadCatalogue(std::wstring_view text, CatalogueTables& tables);
} // namespace PugiPeer

namespace RapidPeer {
JobValues Read(std::wstring_view text);
bool Parse(std::wstring_view text);
} // namespace RapidPeer
