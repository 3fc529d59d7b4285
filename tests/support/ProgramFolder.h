#pragma once

#include <filesystem>

// Files of the tests, found from the folder of the running program.

/// The full path of a file in the program's folder.
std::filesystem::path BesideProgram(const char* fileName);

/// The folder tests/data above the program's folder, in the source tree or in the verification kit.
std::filesystem::path TestDataFolder();
