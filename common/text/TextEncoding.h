#pragma once

#include <string>
#include <string_view>

/// Decoding of text files.
namespace TextEncoding {

/// Decodes a file's bytes. A byte-order mark selects UTF-8 or UTF-16 of either order and is dropped; the
/// default is UTF-8. Malformed or truncated sequences become U+FFFD.
std::wstring Decode(std::string_view bytes);

} // namespace TextEncoding
