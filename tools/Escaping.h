#pragma once

#include <string>
#include <string_view>

/// Texts from files and the registry, made safe for the output: without control characters, line breaks or
/// halves of surrogate pairs.
namespace Escaping {

/// Whether Plain surely changes nothing; much faster than Plain.
bool IsPlain(std::wstring_view text) noexcept;
/// For people: "\n", "\r", "\t", and "\u001B" for other control characters.
std::wstring Plain(std::wstring_view text);
/// A string of JSON, with its quotes.
std::wstring Json(std::wstring_view text);
/// A field of CSV, escaped like Plain and quoted if needed.
std::wstring Csv(std::wstring_view text);

/// The beginning of a text, without cutting a surrogate pair.
std::wstring_view Beginning(std::wstring_view text, std::size_t length) noexcept;

} // namespace Escaping

/// In single quotes and shortened, as messages quote a value.
std::wstring Quoted(std::wstring_view text);
/// "1 problem", "2 problems".
std::wstring Count(std::size_t count, const std::wstring& noun);
