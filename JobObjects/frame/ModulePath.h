#pragma once

#include <string>

/// Full path of the library's file; throws a ComError if it is not to be had or does not fit into 260
/// characters.
std::wstring OwnModulePath();
