#pragma once

#include "Records.h"

#include "common/xml/QxXmlWriter.h"

#include <string_view>

/// Reads and writes the document of a print job with the product's parser and writer, without COM.
namespace RecordText {

JobValues Read(std::wstring_view text);
/// The text stays in the writer's buffer, as in the product.
QxXmlWriter Write(const JobValues& values);

} // namespace RecordText
