#pragma once

#include <string>

// The lines that several processes write to one log. Each contains its writer and number, and is long enough
// for a faulty log to tear.

/// Semaphore and event on which writers wait for a common start. Both are optional.
constexpr wchar_t WritersReady[] = L"log_writers_ready";
constexpr wchar_t WritersStart[] = L"log_writers_start";

/// "<writer>.<number>:" followed by up to `padding` letters; the count varies from line to line.
inline std::wstring LineMark(const std::wstring& writer, int number, int padding) {
    const unsigned length =
        padding == 0 ? 0u : static_cast<unsigned>(number) * 7919u % static_cast<unsigned>(padding);
    const auto letter = static_cast<wchar_t>(L'a' + number % 26);
    return writer + L"." + std::to_wstring(number) + L":" + std::wstring(length, letter);
}

/// The log line of a refused mark, without its line end.
inline std::wstring LineOfMark(const std::wstring& mark) {
    return L"[CPrintJobImpl::put_Xml] Exception: The PrintJob LogTargetType '" + mark +
           L"' is not supported.";
}
