#include "QxMisc.h"

#include "log/QxLogger.h"

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace {

bool IsSpace(wchar_t c) noexcept {
    return c == L' ' || (c >= L'\t' && c <= L'\r');
}

/// The digit's value, or 99 for what is no digit in any base.
unsigned DigitValue(wchar_t c) noexcept {
    if (c >= L'0' && c <= L'9')
        return static_cast<unsigned>(c - L'0');
    c = QxMisc::LowerLetter(c);
    if (c >= L'a' && c <= L'f')
        return static_cast<unsigned>(c - L'a') + 10;
    return 99;
}

/// One attempt. False when the buffer is too short; text is then resized for the next attempt.
bool TryFormat(std::wstring& text, const wchar_t* format, std::va_list arguments) {
    std::va_list attempt;
    va_copy(attempt, arguments);
    errno = 0;
    const int length = std::vswprintf(text.data(), text.size(), format, attempt);
    const int reason = errno;
    va_end(attempt);
    // A truncated result is a negative length in some C libraries and the needed length in others.
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

/// Sign and digits of a number at the start of a text. The magnitude stops at 2^32, above every result.
struct ScannedNumber {
    bool negative = false;
    std::uint64_t magnitude = 0;
};

ScannedNumber ScanNumber(std::wstring_view text, unsigned base) noexcept {
    ScannedNumber number;
    while (!text.empty() && IsSpace(text.front()))
        text.remove_prefix(1);
    if (!text.empty() && (text.front() == L'-' || text.front() == L'+')) {
        number.negative = text.front() == L'-';
        text.remove_prefix(1);
    }
    if (base == 0) {
        const bool zero = !text.empty() && text.front() == L'0';
        const bool hexadecimal =
            zero && text.size() > 2 && QxMisc::LowerLetter(text[1]) == L'x' && DigitValue(text[2]) < 16;
        base = hexadecimal ? 16 : zero ? 8 : 10;
        if (hexadecimal)
            text.remove_prefix(2);
    }
    std::uint32_t low = 0; // one narrow multiplication a digit
    bool beyond = false;
    for (const wchar_t c : text) {
        const unsigned digit = DigitValue(c);
        if (digit >= base)
            break;
        const std::uint64_t next = std::uint64_t{low} * base + digit;
        beyond = beyond || (next >> 32) != 0;
        low = static_cast<std::uint32_t>(next);
    }
    number.magnitude = beyond ? std::uint64_t{1} << 32 : low;
    return number;
}

} // namespace

std::wstring QxMisc::FormatStringV(const wchar_t* format, std::va_list arguments) {
    try {
        std::wstring text(256, L'\0');
        while (!TryFormat(text, format, arguments)) {
        }
        return text;
    } catch (...) {
        // As finished text: the log must not come back here.
        QxLogger::Instance().LogText(LogUtility, L"[QxMisc::FormatStringV] Caught a general exception");
    }
    return format;
}

std::wstring QxMisc::FormatString(const wchar_t* format, ...) {
    struct ArgumentsEnd {
        std::va_list& arguments;
        ~ArgumentsEnd() { va_end(arguments); }
    };
    std::va_list arguments;
    va_start(arguments, format);
    const ArgumentsEnd end{arguments};
    return FormatStringV(format, arguments);
}

std::wstring QxMisc::FillIn(std::wstring_view text, std::initializer_list<std::wstring_view> values) {
    constexpr std::wstring_view mark = L"%s";
    std::wstring result;
    for (const std::wstring_view value : values) {
        const std::size_t at = text.find(mark);
        if (at == std::wstring_view::npos)
            break;
        result.append(text.substr(0, at)).append(value);
        text.remove_prefix(at + mark.size());
    }
    return result.append(text);
}

std::int32_t QxMisc::ParseInt32(std::wstring_view text, int base) noexcept {
    const ScannedNumber number = ScanNumber(text, static_cast<unsigned>(base));
    const auto magnitude = static_cast<std::int64_t>(number.magnitude);
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(number.negative ? -magnitude : magnitude,
                                                              std::numeric_limits<std::int32_t>::min(),
                                                              std::numeric_limits<std::int32_t>::max()));
}

std::uint32_t QxMisc::ParseUInt32(std::wstring_view text) noexcept {
    const ScannedNumber number = ScanNumber(text, 0);
    if (number.magnitude > std::numeric_limits<std::uint32_t>::max())
        return std::numeric_limits<std::uint32_t>::max();
    const auto magnitude = static_cast<std::uint32_t>(number.magnitude);
    return number.negative ? 0u - magnitude : magnitude;
}

std::wstring QxMisc::FormatInt32(std::int32_t value) {
    Int32Digits digits;
    return std::wstring(FormatInt32(value, digits));
}

std::wstring_view QxMisc::FormatInt32(std::int32_t value, Int32Digits& digits) noexcept {
    wchar_t* const end = std::end(digits);
    wchar_t* at = end;
    const bool negative = value < 0;
    auto magnitude = static_cast<std::uint32_t>(value);
    if (negative)
        magnitude = 0u - magnitude;
    do
        *--at = static_cast<wchar_t>(L'0' + magnitude % 10);
    while ((magnitude /= 10) != 0);
    if (negative)
        *--at = L'-';
    return std::wstring_view(at, static_cast<std::size_t>(end - at));
}

bool QxMisc::EqualsIgnoreCase(std::wstring_view a, std::wstring_view b) noexcept {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](wchar_t x, wchar_t y) { return LowerLetter(x) == LowerLetter(y); });
}

bool QxMisc::Contains(std::wstring_view text, std::wstring_view part) noexcept {
    return text.find(part) != std::wstring_view::npos;
}

void QxMisc::ReplaceAll(std::wstring& text, std::wstring_view what, std::wstring_view with) {
    if (what.empty())
        return;
    std::size_t at = text.find(what);
    if (at == std::wstring::npos)
        return;
    std::wstring result;
    std::size_t start = 0;
    for (; at != std::wstring::npos; at = text.find(what, start)) {
        result.append(text, start, at - start).append(with);
        start = at + what.size();
    }
    result.append(text, start);
    text = std::move(result);
}

std::wstring_view QxMisc::FormatBool(bool value) noexcept {
    return value ? L"true" : L"false";
}

bool QxMisc::ParseBool(std::wstring_view text) noexcept {
    return text == L"1" || EqualsIgnoreCase(text, L"true");
}
