#pragma once

#include <string>
#include <vector>

/// Replaces names with wildcards by the files that match, sorted; cmd.exe leaves that to programs. A pattern
/// that matches nothing stays, and fails when it is opened.
std::vector<std::wstring> ExpandWildcards(const std::vector<std::wstring>& names);
/// Replaces folders by their *.xml files and those of their folders, sorted. Throws ToolError if a folder
/// cannot be read or has none.
std::vector<std::wstring> ExpandFolders(const std::vector<std::wstring>& names);
/// Whether a name has "*" or "?" in its last component.
bool HasWildcard(const std::wstring& name);
