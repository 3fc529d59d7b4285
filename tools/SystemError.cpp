#include "SystemError.h"

#include "common/text/SystemText.h"

#include <algorithm>
#include <cwchar>

std::wstring ErrorNumber(long result) {
    wchar_t number[16];
    const int length = std::swprintf(number, 16, L"(0x%08lX)", static_cast<unsigned long>(result));
    return {number, static_cast<std::size_t>(std::max(length, 0))};
}

std::wstring ErrorText(long result) {
    std::wstring text = SystemText(static_cast<DWORD>(result), 0, SystemTextLines::AsStored);
    while (!text.empty() && text.back() <= L' ')
        text.pop_back();
    return text.empty() ? ErrorNumber(result) : text + L" " + ErrorNumber(result);
}
