#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Decoding of text files.
namespace TextEncoding {

/// The malformed sequences of a text.
struct Malformed {
    std::size_t count = 0;
    std::size_t first = 0; ///< offset in the decoded text; meaningless if count is 0
};

/// Decodes a file's bytes. A byte-order mark selects UTF-8 or UTF-16 of either order and is dropped; the
/// default is UTF-8. Malformed or truncated sequences become U+FFFD and are counted if the caller asks.
std::wstring Decode(std::string_view bytes, Malformed* malformed = nullptr);

} // namespace TextEncoding
