#include "QxSystem.h"

#include "QxMisc.h"
#include "log/QxLogger.h"

#include <memory>

namespace {

struct LocalRelease {
    void operator()(void* block) const noexcept { LocalFree(block); }
};

std::wstring_view Trimmed(std::wstring_view text) noexcept {
    constexpr wchar_t white[] = L" \t\r\n\v\f";
    const std::size_t first = text.find_first_not_of(white);
    if (first == std::wstring_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(white) - first + 1);
}

/// False, with the reason as the last error, when the system's table has no text for the code.
bool FindSystemMessage(DWORD code, std::wstring& text) {
    wchar_t* found = nullptr;
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                            FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                        nullptr, code, 0, reinterpret_cast<wchar_t*>(&found), 0, nullptr);
    if (length == 0)
        return false;
    const std::unique_ptr<wchar_t, LocalRelease> release(found);
    text = Trimmed({found, length});
    return true;
}

} // namespace

std::wstring QxMisc::GetModuleFileName(HMODULE module) {
    std::wstring path(MAX_PATH, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), MAX_PATH);
    // A path that is cut off fills the whole buffer.
    if (length == 0 || length == MAX_PATH) {
        LogSystemError(LogUtility, L"[QxMisc::GetModuleFileName] ", GetLastError());
        return {};
    }
    path.resize(length);
    return path;
}

std::wstring QxMisc::GetSystemMessage(DWORD code) noexcept {
    try {
        std::wstring text;
        if (FindSystemMessage(code, text)) {
            ReplaceAll(text, L"%", L"%%");
            return text;
        }
        // The failure's own text is asked for once: a message table that cannot be read would not end.
        std::wstring reason;
        FindSystemMessage(GetLastError(), reason);
        LogError(LogUtility, L"[QxMisc::GetSystemMessage(0x%08lX)] %ls", code, reason.c_str());
    } catch (...) {
        LogError(LogUtility, L"[QxMisc::GetSystemMessage] Caught a general exception");
    }
    return {};
}

std::wstring QxMisc::GetSystemMessage(std::wstring_view prefix, DWORD code) {
    return std::wstring(prefix) + GetSystemMessage(code);
}

void QxMisc::LogSystemError(std::uint32_t category, std::wstring_view prefix, DWORD code) noexcept {
    if (!QxLogger::Instance().Accepts(category))
        return;
    try {
        LogError(category, GetSystemMessage(prefix, code).c_str());
    } catch (...) {
        // Out of memory: the line is lost, as in the log itself.
    }
}
