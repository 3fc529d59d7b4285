#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// Ends a command. The message and the hint, if any, go to standard error.
class ToolError : public std::runtime_error {
public:
    explicit ToolError(std::wstring message, std::wstring hint = {})
        : runtime_error("ToolError"), m_message(std::move(message)), m_hint(std::move(hint)) {}
    const std::wstring& Message() const noexcept { return m_message; }
    const std::wstring& Hint() const noexcept { return m_hint; }

private:
    std::wstring m_message, m_hint;
};

/// Standard output and standard error: Unicode on a console, UTF-8 when redirected. Control characters are
/// escaped. Standard output is buffered.
namespace Console {

void Line(std::wstring_view text);
void ErrorLine(std::wstring_view text);
void ErrorLine(const ToolError& error);
/// A text of several lines, such as help, written as it is.
void Text(std::wstring_view text);
/// Writes the buffered output.
void Flush();

/// Shows progress in one console line, which the next call overwrites. Does nothing if standard error is
/// redirected.
void Progress(std::wstring_view text);
/// The same, with a percentage; shown only when that changes.
void Progress(std::wstring_view text, std::size_t done, std::size_t all);
/// Clears the progress line.
void EndProgress();

} // namespace Console
