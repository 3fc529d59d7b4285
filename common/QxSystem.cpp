#include "QxSystem.h"

#include "common/log/QxLogger.h"
#include "common/text/SystemText.h"
#include "common/text/Text.h"

std::wstring QxMisc::GetModuleFileName(HMODULE module) {
    std::wstring path(MAX_PATH, L'\0');
    const DWORD length = GetModuleFileNameW(module, path.data(), MAX_PATH);
    // A truncated path fills the whole buffer.
    if (length == 0 || length == MAX_PATH) {
        LogSystemError(LogUtility, L"[QxMisc::GetModuleFileName] ", GetLastError());
        return {};
    }
    path.resize(length);
    return path;
}

std::wstring QxMisc::GetSystemMessage(DWORD code) noexcept {
    try {
        if (const std::wstring found = SystemText(code, 0, SystemTextLines::One); !found.empty()) {
            std::wstring text(Trimmed(found));
            ReplaceAll(text, L"%", L"%%");
            return text;
        }
        // Not by calling itself: an unreadable message table would recurse forever.
        const std::wstring reason = SystemText(GetLastError(), 0, SystemTextLines::One);
        LogError(LogUtility, L"[QxMisc::GetSystemMessage(0x%08lX)] %ls", code,
                 std::wstring(Trimmed(reason)).c_str());
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
        // Out of memory: the line is lost.
    }
}
