#pragma once

#include <string>

/// The path of a file in the folder of the running program.
std::wstring BesideProgram(const wchar_t* fileName);
