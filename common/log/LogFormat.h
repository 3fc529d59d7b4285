#pragma once

#include "LogStamp.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The text forms of the log: a line's header and the dump of a data block.
namespace LogFormat {

/// Bits of the configured "Options": the parts of a line's header, in the order in which they are written.
enum Option : std::uint32_t {
    TimeStamp = 1,
    ProcessId = 2,
    ThreadId = 4,
    Category = 8,
    TypeLetter = 16,
    SourceName = 32,
};

/// A block of bytes that goes with a message. Borrows the bytes.
struct DataBlock {
    std::wstring_view prefix; ///< written at the start of each row
    const void* bytes = nullptr;
    std::size_t length = 0;
};

/// "CQx" and "CQxCom" for the system's own categories, "C%04X" for any other.
std::wstring CategoryText(std::uint32_t category);
/// The letter of the lowest set bit among error, warning, information and debug; "?" without one.
wchar_t LetterOfType(std::uint32_t type) noexcept;

/// Appends "[...] " with the chosen parts. Appends nothing when no option is set; brackets stand even when
/// none of the chosen parts has a text.
void AppendHeader(std::wstring& line, std::uint32_t options, const LogStamp& stamp, std::uint32_t category,
                  std::uint32_t type, std::wstring_view sourceName);

/// Rows of 16 bytes: prefix, offset, hexadecimal values, characters. A run of zero rows is shown as one
/// dotted line. At most maxDataSize KiB are shown (0: all); prefix and three dots say that bytes were cut
/// off. Empty for an empty block.
std::wstring HexDump(const DataBlock& data, std::uint32_t maxDataSize);

} // namespace LogFormat
