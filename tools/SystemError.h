#pragma once

#include <string>

/// The system's message for an HRESULT, with its number: "Access denied. (error 0x80070005)"; without a
/// message "error 0x80070005".
std::wstring ErrorText(long result);
/// A text with the number of an HRESULT: "text (error 0x80070005)".
std::wstring WithErrorNumber(const std::wstring& text, long result);
