#pragma once

#include <string>
#include <string_view>

/// Writes a file beside the path, and gives it the path when it is on the disk: there is always a whole file.
/// Throws ToolError.
void WriteNewFile(const std::wstring& path, std::string_view bytes);
