#include "common/log/LogFormat.h"

#include <catch2/catch.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace {

const LogStamp Stamp{2024, 1, 2, 3, 4, 5, 0x1C, 0xABCDE};

std::wstring Header(std::uint32_t options, std::uint32_t category = 1, std::uint32_t type = 1,
                    std::wstring_view sourceName = L"Source") {
    std::wstring line;
    LogFormat::AppendHeader(line, options, Stamp, category, type, sourceName);
    return line;
}

std::wstring Dump(const std::vector<unsigned char>& bytes, std::wstring_view prefix = {},
                  std::uint32_t max = 0) {
    return LogFormat::HexDump({prefix, bytes.data(), bytes.size()}, max);
}

std::wstring ZeroRow(const wchar_t* offset) {
    return std::wstring(offset) +
           L":  00 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  ................\n";
}

constexpr wchar_t Dots[] =
    L".........  .. .. .. ..  .. .. .. ..  .. .. .. ..  .. .. .. ..  ................\n";

} // namespace

TEST_CASE("Header_without_options_is_empty") {
    CHECK(Header(0) == L"");
}

TEST_CASE("Header_each_option_writes_its_part") {
    CHECK(Header(LogFormat::TimeStamp) == L"[2024/01/02 03:04:05] ");
    CHECK(Header(LogFormat::ProcessId) == L"[P01C] ");
    CHECK(Header(LogFormat::ThreadId) == L"[TABCDE] ");
    CHECK(Header(LogFormat::Category, 0x10000) == L"[CQx] ");
    CHECK(Header(LogFormat::TypeLetter) == L"[e] ");
    CHECK(Header(LogFormat::SourceName) == L"[Source] ");
}

TEST_CASE("Header_parts_are_written_in_order_separated_by_one_space") {
    CHECK(Header(3) == L"[2024/01/02 03:04:05 P01C] ");
    CHECK(Header(63, 0x20000) == L"[2024/01/02 03:04:05 P01C TABCDE CQxCom e Source] ");
    CHECK(Header(LogFormat::Category | LogFormat::TypeLetter, 1) == L"[e] ");
}

TEST_CASE("Header_chosen_parts_without_text_leave_empty_brackets") {
    CHECK(Header(LogFormat::Category, 1) == L"[] ");
    CHECK(Header(LogFormat::SourceName, 1, 1, L"") == L"[] ");
    CHECK(Header(64) == L"[] ");
}

TEST_CASE("Header_category_with_the_general_bit_is_not_shown") {
    CHECK(Header(LogFormat::Category, 0x10001) == L"[] ");
    CHECK(Header(LogFormat::Category, 2) == L"[C0002] ");
}

TEST_CASE("CategoryText_names_the_known_categories") {
    CHECK(LogFormat::CategoryText(0x10000) == L"CQx");
    CHECK(LogFormat::CategoryText(0x20000) == L"CQxCom");
    CHECK(LogFormat::CategoryText(2) == L"C0002");
    CHECK(LogFormat::CategoryText(0xABCDEF00) == L"CABCDEF00");
    CHECK(LogFormat::CategoryText(0x30000) == L"C30000");
}

TEST_CASE("TypeLetter_is_that_of_the_lowest_bit") {
    const std::wstring letters = L"?eweiewedewe";
    for (std::uint32_t type = 0; type < letters.size(); ++type)
        CHECK(LogFormat::LetterOfType(type) == letters[type]);
    CHECK(LogFormat::LetterOfType(16) == L'?');
}

TEST_CASE("HexDump_empty_block_is_empty") {
    const unsigned char byte = 1;
    CHECK(LogFormat::HexDump({}, 0) == L"");
    CHECK(LogFormat::HexDump({L"p", &byte, 0}, 0) == L"");
    CHECK(LogFormat::HexDump({L"p", nullptr, 5}, 0) == L"");
}

TEST_CASE("HexDump_full_row_shows_values_and_characters") {
    CHECK(Dump({0x41, 0x00, 0x1F, 0x20, 0x7E, 0x7F, 0x80, 0xFF, '0', '1', '2', '3', 'x', 'y', 'z', '!'},
               L"> ") ==
          L"> 00000000:  41 00 1F 20  7E 7F 80 FF  30 31 32 33  78 79 7A 21  A.. ~...0123xyz!\n");
}

TEST_CASE("HexDump_short_row_keeps_the_character_column") {
    for (std::size_t length = 1; length <= 16; ++length) {
        const std::wstring row = Dump(std::vector<unsigned char>(length, 'A'));
        CHECK(row.find(L'A') == row.size() - 1 - length);
        CHECK(row.size() == 9 + 52 + 2 + length + 1);
        CHECK(row.substr(row.size() - 1 - length) == std::wstring(length, L'A') + L"\n");
    }
    CHECK(Dump({'A'}) == L"00000000:  41                                                  A\n");
    CHECK(Dump({'A', 'B', 'C', 'D', 'E'}) ==
          L"00000000:  41 42 43 44  45                                     ABCDE\n");
}

TEST_CASE("HexDump_32_zero_bytes_are_shown_in_full") {
    CHECK(Dump(std::vector<unsigned char>(32)) == ZeroRow(L"00000000") + ZeroRow(L"00000010"));
}

TEST_CASE("HexDump_48_zero_bytes_are_shown_in_full") {
    CHECK(Dump(std::vector<unsigned char>(48)) ==
          ZeroRow(L"00000000") + ZeroRow(L"00000010") + ZeroRow(L"00000020"));
}

TEST_CASE("HexDump_49_zero_bytes_collapse_up_to_the_last_row") {
    CHECK(Dump(std::vector<unsigned char>(49)) ==
          ZeroRow(L"00000000") + Dots +
              L"00000030:  00                                                  .\n");
}

TEST_CASE("HexDump_64_zero_bytes_collapse_up_to_the_last_row") {
    CHECK(Dump(std::vector<unsigned char>(64)) == ZeroRow(L"00000000") + Dots + ZeroRow(L"00000030"));
}

TEST_CASE("HexDump_zero_run_ends_at_the_first_other_row") {
    std::vector<unsigned char> bytes(16 * 8);
    bytes[16 * 5] = 'X';
    CHECK(Dump(bytes, L"#") ==
          L"#" + ZeroRow(L"00000000") + L"#" + Dots +
              L"#00000050:  58 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  X...............\n" + L"#" +
              ZeroRow(L"00000060") + L"#" + ZeroRow(L"00000070"));
}

TEST_CASE("HexDump_two_zero_rows_do_not_collapse") {
    std::vector<unsigned char> bytes(64);
    bytes[32] = 1;
    const std::wstring dump = Dump(bytes);
    CHECK(dump.find(Dots) == std::wstring::npos);
    CHECK(dump.find(L"00000010:") != std::wstring::npos);
}

TEST_CASE("HexDump_three_zero_rows_at_the_end_collapse_but_not_two") {
    std::vector<unsigned char> bytes(64);
    bytes[0] = 0x7F;
    const std::wstring first =
        L"00000000:  7F 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  ................\n";
    CHECK(Dump(bytes) == first + ZeroRow(L"00000010") + Dots + ZeroRow(L"00000030"));
    bytes[16] = 0x1F;
    CHECK(Dump(bytes) ==
          first + L"00000010:  1F 00 00 00  00 00 00 00  00 00 00 00  00 00 00 00  ................\n" +
              ZeroRow(L"00000020") + ZeroRow(L"00000030"));
}

TEST_CASE("HexDump_second_run_collapses_too") {
    std::vector<unsigned char> bytes(16 * 10);
    bytes[16 * 4] = 1;
    const std::wstring dump = Dump(bytes);
    const std::size_t first = dump.find(Dots);
    REQUIRE(first != std::wstring::npos);
    CHECK(dump.find(Dots, first + 1) != std::wstring::npos);
    CHECK(dump.find(L"00000090:") != std::wstring::npos);
}

TEST_CASE("HexDump_block_above_the_limit_is_truncated") {
    std::vector<unsigned char> bytes(1025, 'A');
    const std::wstring cut = Dump(bytes, L"p ", 1);
    CHECK(cut.find(L"p 000003F0:") != std::wstring::npos);
    CHECK(cut.find(L"p 00000400:") == std::wstring::npos);
    CHECK(cut.substr(cut.size() - 6) == L"p ...\n");
    bytes.pop_back();
    CHECK(Dump(bytes, L"p ", 1).find(L"p ...\n") == std::wstring::npos);
    bytes.resize(5000, 'A');
    CHECK(Dump(bytes, L"", 0xFFFFFFFF).find(L"00001380:") != std::wstring::npos);
    CHECK(Dump(bytes).find(L"00001380:") != std::wstring::npos);
}

TEST_CASE("HexDump_collapsing_considers_only_the_shown_bytes") {
    std::vector<unsigned char> bytes(2048);
    CHECK(Dump(bytes, L"", 1) == ZeroRow(L"00000000") + Dots + ZeroRow(L"000003F0") + L"...\n");
}
