#include "Utf8.h"

#include <algorithm>

#include <windows.h>

void AppendUtf8(std::string& bytes, std::wstring_view text) {
    const std::size_t before = bytes.size();
    if (std::all_of(text.begin(), text.end(), [](wchar_t c) { return c < 0x80; })) {
        bytes.resize(before + text.size());
        std::transform(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(before),
                       [](wchar_t c) { return static_cast<char>(c); });
        return;
    }
    bytes.resize(before + 3 * text.size()); // the most that one UTF-16 unit takes
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), bytes.data() + before,
                            static_cast<int>(3 * text.size()), nullptr, nullptr);
    bytes.resize(before + static_cast<std::size_t>(size));
}

std::string Utf8(std::wstring_view text) {
    std::string bytes;
    AppendUtf8(bytes, text);
    return bytes;
}

std::wstring Wide(std::string_view bytes) {
    std::wstring text(bytes.size(), L'\0');
    const int size = MultiByteToWideChar(CP_UTF8, 0, bytes.data(), static_cast<int>(bytes.size()),
                                         text.data(), static_cast<int>(text.size()));
    text.resize(static_cast<std::size_t>(size));
    return text;
}
