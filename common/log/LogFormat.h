#pragma once

#include "LogStamp.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// Line headers and hex dumps.
namespace LogFormat {

/// Bits of "Options": the parts of a header, in the order of output.
enum Option : std::uint32_t {
    TimeStamp = 1,
    ProcessId = 2,
    ThreadId = 4,
    Category = 8,
    TypeLetter = 16,
    SourceName = 32,
};

/// Bytes to dump with a message; does not own them.
struct DataBlock {
    std::wstring_view prefix; ///< written at the start of each row
    const void* bytes = nullptr;
    std::size_t length = 0;
};

/// "CQx" or "CQxCom" for the library's categories, otherwise "C%04X".
std::wstring CategoryText(std::uint32_t category);
/// "e", "w", "i" or "d" by the lowest bit of LogType that is set; "?" without one.
wchar_t LetterOfType(std::uint32_t type) noexcept;

/// Appends "[...] " with the chosen parts; nothing if options is 0. The brackets appear even if every chosen
/// part is empty.
void AppendHeader(std::wstring& line, std::uint32_t options, const LogStamp& stamp, std::uint32_t category,
                  std::uint32_t type, std::wstring_view sourceName);

/// Rows of 16 bytes: prefix, offset, hexadecimal values, characters. Collapses a run of zero rows into a
/// dotted line. Shows at most maxDataSize KiB (0: all); a last row of three dots marks truncation. Empty for
/// an empty block.
std::wstring HexDump(const DataBlock& data, std::uint32_t maxDataSize);

} // namespace LogFormat
