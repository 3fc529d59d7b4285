#pragma once

#include <cstddef>
#include <string>

/// Shows what is wrong with a catalogue file, and how much it holds. Returns the number of findings. Throws
/// ToolError when the file cannot be read.
std::size_t LintCatalogueFile(const std::wstring& path);

/// The file that the class is registered with; empty when it is not registered.
std::wstring RegisteredModule(const std::wstring& className);
/// The catalogue beside a module.
std::wstring CatalogueBeside(const std::wstring& module);
