#include "SystemError.h"

#include "common/text/SystemText.h"

#include <algorithm>
#include <cwchar>

namespace {

std::wstring ErrorNumber(long result) {
    wchar_t number[24];
    const int length = std::swprintf(number, 24, L"error 0x%08lX", static_cast<unsigned long>(result));
    return {number, static_cast<std::size_t>(std::max(length, 0))};
}

} // namespace

std::wstring WithErrorNumber(const std::wstring& text, long result) {
    return text.empty() ? ErrorNumber(result) : text + L" (" + ErrorNumber(result) + L")";
}

std::wstring ErrorText(long result) {
    std::wstring text = SystemText(static_cast<DWORD>(result), 0, SystemTextLines::One);
    while (!text.empty() && text.back() <= L' ')
        text.pop_back();
    if (const std::size_t insert = text.find(L"%1"); insert != std::wstring::npos)
        text.replace(insert, 2, L"the file");
    return WithErrorNumber(text, result);
}
