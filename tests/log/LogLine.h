#pragma once

#include <string>

// The lines that several processes write to one log: each names its writer and its number, and is long enough
// to be torn where something can tear it.

/// Semaphore and event of the line at which writers wait for each other. Both may be missing.
constexpr wchar_t writersReady[] = L"log_writers_ready";
constexpr wchar_t writersStart[] = L"log_writers_start";

/// "<writer>.<number>:" and a number of letters that differs from line to line, at most the padding.
inline std::wstring LineMark(const std::wstring& writer, int number, int padding) {
    const unsigned length =
        padding == 0 ? 0u : static_cast<unsigned>(number) * 7919u % static_cast<unsigned>(padding);
    const auto letter = static_cast<wchar_t>(L'a' + number % 26);
    return writer + L"." + std::to_wstring(number) + L":" + std::wstring(length, letter);
}

/// The line that the refusal of a mark leaves in the log, without its line end.
inline std::wstring LineOfMark(const std::wstring& mark) {
    return L"[CPrintJobImpl::put_Xml] Exception: The PrintJob LogTargetType '" + mark +
           L"' is not supported.";
}
