#include "QxTraceLog.h"

#include <string>

#include <windows.h>

void QxTraceLog::Write(std::wstring_view text) noexcept {
    try {
        for (std::size_t end = text.find(L'\n'); end != std::wstring_view::npos; end = text.find(L'\n')) {
            OutputDebugStringW(std::wstring(text.substr(0, end)).c_str());
            text.remove_prefix(end + 1);
        }
    } catch (...) {
        // Out of memory: the rest of the text is lost.
    }
}
