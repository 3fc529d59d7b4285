#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// Ends a command. The message goes to standard error.
class ToolError : public std::runtime_error {
public:
    explicit ToolError(std::wstring message) : runtime_error("ToolError"), m_message(std::move(message)) {}
    const std::wstring& Message() const noexcept { return m_message; }

private:
    std::wstring m_message;
};

/// Standard output and standard error: Unicode on a console, UTF-8 when redirected.
namespace Console {

void Line(std::wstring_view text);
void ErrorLine(std::wstring_view text);

/// Shows progress in one console line, which the next call overwrites. Does nothing if standard error is
/// redirected.
void Progress(std::wstring_view text);
/// Clears the progress line.
void EndProgress();

} // namespace Console
