#pragma once

#include "Records.h"

#include "common/xml/QxXmlWriter.h"

#include <string_view>

/// A print job record's document, read and written by the product's parser and writer alone, without COM.
namespace RecordText {

JobValues Read(std::wstring_view text);
/// As a record gives it: the text stays in the writer's buffer.
QxXmlWriter Write(const JobValues& values);

} // namespace RecordText
