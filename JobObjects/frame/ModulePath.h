#pragma once

#include <string>

/// Full path of the library's file. Throws a ComError if it is unavailable or longer than 259 characters.
std::wstring OwnModulePath();
