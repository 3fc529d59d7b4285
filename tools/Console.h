#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

/// A command that cannot do its work; the message goes to the error output.
class ToolError : public std::runtime_error {
public:
    explicit ToolError(std::wstring message) : runtime_error("ToolError"), m_message(std::move(message)) {}
    const std::wstring& Message() const noexcept { return m_message; }

private:
    std::wstring m_message;
};

/// The tool's two outputs. A console shows every character; what is redirected is written as UTF-8.
namespace Console {

void Line(std::wstring_view text);
void ErrorLine(std::wstring_view text);

/// Tells on a console what a long work is at, in one line that the next one replaces. Writes nothing where
/// the error output is redirected.
void Progress(std::wstring_view text);
/// Takes the line away.
void EndProgress();

} // namespace Console
