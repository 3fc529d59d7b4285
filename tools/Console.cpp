#include "Console.h"

#include <windows.h>

namespace {

bool IsConsole(HANDLE output) {
    DWORD mode = 0;
    return GetConsoleMode(output, &mode) != 0;
}

std::string Utf8(std::wstring_view text) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
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
        const auto length = static_cast<DWORD>(std::min(text.size(), longest));
        if (!WriteConsoleW(output, text.data(), length, &written, nullptr) || written == 0)
            return;
    }
}

std::size_t shownProgress = 0;

} // namespace

void Console::Line(std::wstring_view text) {
    Write(STD_OUTPUT_HANDLE, std::wstring(text) + L"\r\n");
}

void Console::ErrorLine(std::wstring_view text) {
    EndProgress();
    Write(STD_ERROR_HANDLE, std::wstring(text) + L"\r\n");
}

void Console::Progress(std::wstring_view text) {
    if (!IsConsole(GetStdHandle(STD_ERROR_HANDLE)))
        return;
    EndProgress();
    Write(STD_ERROR_HANDLE, text);
    shownProgress = text.size();
}

void Console::EndProgress() {
    if (shownProgress > 0)
        Write(STD_ERROR_HANDLE, L"\r" + std::wstring(shownProgress, L' ') + L"\r");
    shownProgress = 0;
}
