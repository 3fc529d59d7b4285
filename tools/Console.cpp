#include "Console.h"

#include "Escaping.h"
#include "Utf8.h"

#include <windows.h>

namespace {

bool IsConsole(HANDLE output) {
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0;
}

void Write(DWORD which, std::wstring_view text) {
    HANDLE output = GetStdHandle(which);
    DWORD written = 0;
    if (!IsConsole(output)) {
        const std::string bytes = Utf8(text);
        WriteFile(output, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        return;
    }
    // WriteConsole fails for very long texts.
    constexpr std::size_t longest = 8192;
    for (; !text.empty(); text.remove_prefix(written)) {
        const auto length = static_cast<DWORD>(Escaping::Beginning(text, longest).size());
        if (!WriteConsoleW(output, text.data(), length, &written, nullptr) || written == 0)
            return;
    }
}

/// A write costs much more than its text.
constexpr std::size_t BufferSize = 65536;
std::wstring pendingOutput;

std::size_t shownProgress = 0;
std::size_t shownPercentage = 101;

} // namespace

void Console::Line(std::wstring_view text) {
    if (Escaping::IsPlain(text))
        pendingOutput += text;
    else
        pendingOutput += Escaping::Plain(text);
    Text(L"\r\n");
}

void Console::Text(std::wstring_view text) {
    pendingOutput += text;
    if (pendingOutput.size() >= BufferSize)
        Flush();
}

void Console::Flush() {
    if (pendingOutput.empty())
        return;
    EndProgress();
    Write(STD_OUTPUT_HANDLE, pendingOutput);
    pendingOutput.clear();
}

void Console::ErrorLine(std::wstring_view text) {
    Flush();
    EndProgress();
    Write(STD_ERROR_HANDLE, Escaping::Plain(text) + L"\r\n");
}

void Console::ErrorLine(const ToolError& error) {
    ErrorLine(L"jobobjects: " + error.Message());
    if (!error.Hint().empty())
        ErrorLine(error.Hint());
}

void Console::Progress(std::wstring_view text) {
    if (!IsConsole(GetStdHandle(STD_ERROR_HANDLE)))
        return;
    EndProgress();
    Write(STD_ERROR_HANDLE, text);
    shownProgress = text.size();
}

void Console::Progress(std::wstring_view text, std::size_t done, std::size_t all) {
    const auto percentage = static_cast<std::size_t>(done * 100ULL / (all == 0 ? 1 : all));
    if (percentage == shownPercentage)
        return;
    shownPercentage = percentage;
    Progress(std::wstring(text) + L": " + std::to_wstring(percentage) + L" %");
}

void Console::EndProgress() {
    if (shownProgress > 0)
        Write(STD_ERROR_HANDLE, L"\r" + std::wstring(shownProgress, L' ') + L"\r");
    shownProgress = 0;
}
