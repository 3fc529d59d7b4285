#pragma once

#include <string>
#include <string_view>

/// The text forms of markup: escaping, and how an element and an attribute are written. Shared by the
/// parser's edits and by the writer, so that both give the same characters.
namespace QxXmlText {

enum class Escape { Data, Attribute };

/// Appends text with "<", "&", ">" escaped, and "'" and '"' too in an attribute value.
void AppendEscaped(std::wstring& out, std::wstring_view text, Escape kind);
/// Appends text with the five entities decoded; any other "&" is copied. Numeric references stay as they are.
void AppendUnescaped(std::wstring& out, std::wstring_view text);

/// "<name>data</name>", or "<name/>" when data is empty.
void AppendElement(std::wstring& out, std::wstring_view name, std::wstring_view data);
/// ' name="value"'.
void AppendAttribute(std::wstring& out, std::wstring_view name, std::wstring_view value);

} // namespace QxXmlText
