#include "Numbers.h"

#include "Text.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <limits>

namespace {

bool IsSpace(wchar_t c) noexcept {
    return c == L' ' || (c >= L'\t' && c <= L'\r');
}

/// The digit's value, or 99 for any other character.
unsigned DigitValue(wchar_t c) noexcept {
    if (c >= L'0' && c <= L'9')
        return static_cast<unsigned>(c - L'0');
    c = QxMisc::LowerLetter(c);
    if (c >= L'a' && c <= L'f')
        return static_cast<unsigned>(c - L'a') + 10;
    return 99;
}

/// A number at the start of a text. The magnitude saturates at 2^32, above every result.
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
    std::uint32_t low = 0; // one 32-bit multiplication per digit
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

/// The number of bits gives the number of digits, or one less: 1233 / 4096 is slightly above log10(2).
std::size_t DigitCount(std::uint32_t value) noexcept {
    constexpr std::uint32_t powers[] = {0,      10,      100,      1000,      10000,
                                        100000, 1000000, 10000000, 100000000, 1000000000};
    const auto digits = static_cast<std::size_t>(std::bit_width(value)) * 1233 >> 12;
    return digits + (value >= powers[digits] ? 1 : 0);
}

} // namespace

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
    const wchar_t* const end = WriteInt32(value, digits);
    return std::wstring_view(digits, static_cast<std::size_t>(end - digits));
}

wchar_t* QxMisc::WriteInt32(std::int32_t value, wchar_t* to) noexcept {
    auto magnitude = static_cast<std::uint32_t>(value);
    if (value < 0) {
        *to++ = L'-';
        magnitude = 0u - magnitude;
    }
    wchar_t* const end = to + DigitCount(magnitude);
    wchar_t* at = end;
    do
        *--at = static_cast<wchar_t>(L'0' + magnitude % 10);
    while ((magnitude /= 10) != 0);
    return end;
}
