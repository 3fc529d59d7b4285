#include "LogFormat.h"

#include "QxLogger.h"
#include "common/text/Format.h"

#include <algorithm>

namespace {

constexpr std::size_t RowSize = 16;
constexpr std::size_t GroupSize = 4;
/// A shorter dump is shown in full.
constexpr std::size_t MinCollapsedDump = 49;

constexpr wchar_t DottedLine[] =
    L".........  .. .. .. ..  .. .. .. ..  .. .. .. ..  .. .. .. ..  ................\n";

/// The bytes to dump.
struct Shown {
    const unsigned char* bytes;
    std::size_t length;

    std::size_t RowEnd(std::size_t row) const noexcept { return std::min(row + RowSize, length); }
    bool IsZeroRow(std::size_t row) const noexcept {
        return std::all_of(bytes + row, bytes + RowEnd(row), [](unsigned char byte) { return byte == 0; });
    }
    bool IsLastRow(std::size_t row) const noexcept { return length - row <= RowSize; }
};

void AppendHex(std::wstring& text, std::size_t value, int digits) {
    constexpr wchar_t hexDigits[] = L"0123456789ABCDEF";
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
        text += hexDigits[value >> shift & 0xF];
}

void AppendRow(std::wstring& text, std::wstring_view prefix, const Shown& data, std::size_t row) {
    const std::size_t end = data.RowEnd(row);
    text += prefix;
    AppendHex(text, row, 8);
    text += L':';
    for (std::size_t at = row; at < end; ++at) {
        text.append((at - row) % GroupSize == 0 ? 2 : 1, L' ');
        AppendHex(text, data.bytes[at], 2);
    }
    const std::size_t missing = row + RowSize - end;
    text.append(3 * missing + missing / GroupSize + 2, L' ');
    for (std::size_t at = row; at < end; ++at) {
        const bool printable = data.bytes[at] >= 0x20 && data.bytes[at] <= 0x7E;
        text += printable ? static_cast<wchar_t>(data.bytes[at]) : L'.';
    }
    text += L'\n';
}

/// Whether the rows after this one collapse into a dotted line.
bool StartsZeroRun(const Shown& data, std::size_t row) noexcept {
    return data.length >= MinCollapsedDump && data.length - row > 2 * RowSize && data.IsZeroRow(row) &&
           data.IsZeroRow(row + RowSize) && data.IsZeroRow(row + 2 * RowSize);
}

} // namespace

std::wstring LogFormat::CategoryText(std::uint32_t category) {
    switch (category) {
    case LogUtility:
        return L"CQx";
    case LogCom:
        return L"CQxCom";
    default:
        return FormatText(L"C%04X", category);
    }
}

wchar_t LogFormat::LetterOfType(std::uint32_t type) noexcept {
    constexpr wchar_t letters[] = L"ewid";
    for (unsigned bit = 0; bit < 4; ++bit) {
        if (type >> bit & 1)
            return letters[bit];
    }
    return L'?';
}

void LogFormat::AppendHeader(std::wstring& line, std::uint32_t options, const LogStamp& stamp,
                             std::uint32_t category, std::uint32_t type, std::wstring_view sourceName) {
    if (options == 0)
        return;
    line += L'[';
    const std::size_t start = line.size();
    const auto append = [&](std::wstring_view part) {
        if (line.size() > start)
            line += L' ';
        line += part;
    };
    const LogStamp& t = stamp;
    if (options & TimeStamp)
        append(
            FormatText(L"%04d/%02d/%02d %02d:%02d:%02d", t.year, t.month, t.day, t.hour, t.minute, t.second));
    if (options & ProcessId)
        append(FormatText(L"P%03X", stamp.processId));
    if (options & ThreadId)
        append(FormatText(L"T%03X", stamp.threadId));
    if (options & Category && !(category & LogGeneral))
        append(CategoryText(category));
    if (options & TypeLetter)
        append(std::wstring(1, LetterOfType(type)));
    if (options & SourceName && !sourceName.empty())
        append(sourceName);
    line += L"] ";
}

std::wstring LogFormat::HexDump(const DataBlock& data, std::uint32_t maxDataSize) {
    if (!data.bytes || data.length == 0)
        return {};
    std::uint64_t length = data.length;
    if (maxDataSize != 0)
        length = std::min(length, std::uint64_t{maxDataSize} * 1024);
    const Shown shown{static_cast<const unsigned char*>(data.bytes), static_cast<std::size_t>(length)};

    std::wstring text;
    std::size_t row = 0;
    while (row < shown.length) {
        AppendRow(text, data.prefix, shown, row);
        const bool collapse = StartsZeroRun(shown, row);
        row += RowSize;
        if (!collapse)
            continue;
        text.append(data.prefix).append(DottedLine);
        while (!shown.IsLastRow(row) && shown.IsZeroRow(row))
            row += RowSize;
    }
    if (shown.length < data.length)
        text.append(data.prefix).append(L"...\n");
    return text;
}
