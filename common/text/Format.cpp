#include "Format.h"

#include <cerrno>
#include <cwchar>
#include <limits>
#include <stdexcept>

namespace {

/// One attempt. False if the buffer is too short; text is then resized for the next attempt.
bool TryFormat(std::wstring& text, const wchar_t* format, std::va_list arguments) {
    std::va_list attempt;
    va_copy(attempt, arguments);
    errno = 0;
    const int length = std::vswprintf(text.data(), text.size(), format, attempt);
    const int reason = errno;
    va_end(attempt);
    // For a truncated result some C libraries return a negative length, others the required length.
    if (length >= 0 && static_cast<std::size_t>(length) < text.size()) {
        text.resize(static_cast<std::size_t>(length));
        return true;
    }
    const bool cannotFormat = length < 0 && (reason == EILSEQ || reason == EINVAL);
    // No C library formats more than INT_MAX characters.
    if (cannotFormat || text.size() > std::numeric_limits<int>::max())
        throw std::length_error("format");
    text.assign(length >= 0 ? static_cast<std::size_t>(length) + 1 : text.size() * 4, L'\0');
    return false;
}

} // namespace

std::wstring FormatTextV(const wchar_t* format, std::va_list arguments) {
    std::wstring text(256, L'\0');
    while (!TryFormat(text, format, arguments)) {
    }
    return text;
}

std::wstring FormatText(const wchar_t* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const ArgumentsEnd end{arguments};
    return FormatTextV(format, arguments);
}
