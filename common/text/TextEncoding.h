#pragma once

#include <string>
#include <string_view>

/// Text files as the system reads them.
namespace TextEncoding {

/// Converts a file's bytes to wide text. A byte-order mark decides between UTF-8 and UTF-16 of either order
/// and is dropped; without one the bytes are UTF-8. What is malformed or cut off becomes U+FFFD.
std::wstring Decode(std::string_view bytes);

} // namespace TextEncoding
