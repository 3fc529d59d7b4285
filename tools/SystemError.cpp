#include "SystemError.h"

#include <algorithm>
#include <cwchar>

#include <windows.h>

std::wstring ErrorNumber(long result) {
    wchar_t number[16];
    const int length = std::swprintf(number, 16, L"(0x%08lX)", static_cast<unsigned long>(result));
    return {number, static_cast<std::size_t>(std::max(length, 0))};
}

std::wstring ErrorText(long result) {
    wchar_t* message = nullptr;
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
        static_cast<DWORD>(result), 0, reinterpret_cast<wchar_t*>(&message), 0, nullptr);
    std::wstring text(message ? message : L"", length);
    LocalFree(message);
    while (!text.empty() && text.back() <= L' ')
        text.pop_back();
    return text.empty() ? ErrorNumber(result) : text + L" " + ErrorNumber(result);
}
