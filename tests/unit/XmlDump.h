#pragma once

#include "common/xml/QxXmlParser.h"

#include <string>
#include <string_view>

/// The elements of a parser in document order, one line each: depth, tag name, the five offsets. Two parsers
/// with the same dump hold the same elements, whatever the order of their entries.
std::wstring DumpElements(const QxXmlParser& parser);

/// The dump of the first top-level element only, the one that a parse of the document would find.
std::wstring DumpFirstElement(const QxXmlParser& parser);

/// Checks that all offsets lie inside the text and in order, and that all links are entries. Without a test
/// framework, so that fuzzing can use it. Returns what is wrong, or nothing.
const char* FindBrokenPosition(const QxXmlParser& parser);
