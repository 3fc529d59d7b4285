#pragma once

#include "common/xml/QxXmlParser.h"

#include <string>
#include <string_view>

/// The elements in document order, one line each: depth, tag name, the five offsets. Parsers with the same
/// dump hold the same elements; the order of their entries may differ.
std::wstring DumpElements(const QxXmlParser& parser);

/// Dumps the first top-level element only, as a parse of the document does.
std::wstring DumpFirstElement(const QxXmlParser& parser);

/// Checks that offsets are ordered and inside the text and that links are valid entries. Returns a
/// description of the first problem, or null. Free of the test framework, so fuzzers can use it.
const char* FindBrokenPosition(const QxXmlParser& parser);
