#pragma once

#include "Records.h"

#include "JobObjects/contents/JobAttributeCatalogue.h"

#include <functional>
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
/// Parses and reads LineAttributes of every child of the root by name. Returns the length of all values.
std::size_t ReadAttributes(std::wstring_view text);
/// Parses, and returns a function that finds all copy lines and their LineElements by name and counts them.
std::function<std::size_t()> Walker(std::wstring_view text);
} // namespace PugiPeer

namespace RapidPeer {
JobValues Read(std::wstring_view text);
bool Parse(std::wstring_view text);
std::size_t ReadAttributes(std::wstring_view text);
std::function<std::size_t()> Walker(std::wstring_view text);
} // namespace RapidPeer
