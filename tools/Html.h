#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Pieces of an HTML page.
namespace Html {

/// UTF-8 text as content or attribute value, without control characters.
std::string Text(std::string_view text);
/// "134,315".
std::string Number(std::int64_t number);
/// "16.3 %"; a dash if there is nothing to divide by.
std::string Percent(std::int64_t part, std::int64_t all);

} // namespace Html
