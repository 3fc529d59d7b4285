#pragma once

#include <string>

/// The system's words for an error code or HRESULT, with its number: "Access denied. (0x80070005)".
std::wstring ErrorText(long result);
/// "(0x80070005)" alone, for who has words of his own.
std::wstring ErrorNumber(long result);
