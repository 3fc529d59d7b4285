#pragma once

#include "Records.h"

#include <string>
#include <string_view>

/// A print job record's document, read and written by the product's parser and writer alone, without COM.
namespace RecordText {

JobValues Read(std::wstring_view text);
std::wstring Write(const JobValues& values);

} // namespace RecordText
