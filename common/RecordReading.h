#pragma once

#include "QxDateTime.h"
#include "QxString.h"
#include "QxVersion.h"
#include "QxXmlParser.h"

#include <cstdint>
#include <string_view>

/// How records read the children of the parser's current element: each by name, from the first child on,
/// with the value that a missing or unusable element stands for.
namespace RecordReading {

/// Loads a document and makes its root current. Throws a QxException "<root> element is missing.".
void OpenRoot(QxXmlParser& parser, std::wstring_view xml, std::wstring_view root);

/// Parses and checks a "Version" attribute; throws the QxException of a malformed or invalid version.
QxVersion ParseVersion(std::wstring_view text);

/// Empty when missing.
QxString Text(QxXmlParser& parser, std::wstring_view name);
/// 0 when missing.
std::int32_t Number(QxXmlParser& parser, std::wstring_view name);
/// A positive number, otherwise 0.
std::int32_t PositiveNumber(QxXmlParser& parser, std::wstring_view name);
/// False when missing.
bool Flag(QxXmlParser& parser, std::wstring_view name);
/// The zero date when missing or not a date-time. Milliseconds are lost.
QxDateTime DateTime(QxXmlParser& parser, std::wstring_view name);

} // namespace RecordReading
