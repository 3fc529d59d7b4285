#pragma once

#include <string>

/// The system's text for an error code or HRESULT, with its number: "Access denied. (0x80070005)".
std::wstring ErrorText(long result);
/// "(0x80070005)" alone, for callers with a text of their own.
std::wstring ErrorNumber(long result);
