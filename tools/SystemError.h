#pragma once

#include <string>

/// The system's message for an HRESULT, with its number: "Access denied. (0x80070005)".
std::wstring ErrorText(long result);
/// The number alone: "(0x80070005)".
std::wstring ErrorNumber(long result);
