#include "Allocations.h"
#include "CapturedLog.h"
#include "common/QxMisc.h"
#include "common/text/CopyText.h"
#include "common/text/Numbers.h"
#include "common/text/Text.h"

#include <catch2/catch.hpp>

#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

using namespace std::literals;

namespace {

constexpr std::int32_t MaxSigned = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t MinSigned = std::numeric_limits<std::int32_t>::min();

std::wstring Replaced(std::wstring text, std::wstring_view what, std::wstring_view with) {
    QxMisc::ReplaceAll(text, what, with);
    return text;
}

} // namespace

TEST_CASE("FormatString_arguments_are_formatted") {
    CHECK(QxMisc::FormatString(L"") == L"");
    CHECK(QxMisc::FormatString(L"plain, 100%%") == L"plain, 100%");
    CHECK(QxMisc::FormatString(L"%ls %d 0x%08X %lc", L"wide", -5, 0xABu, L'c') == L"wide -5 0x000000AB c");
}

TEST_CASE("FormatString_result_of_any_length_is_complete") {
    for (const std::size_t length : {254u, 255u, 256u, 257u, 1023u, 1024u, 1025u, 100000u, 3000000u}) {
        const std::wstring text(length, L'x');
        const std::wstring formatted = QxMisc::FormatString(L"<%ls>", text.c_str());
        CHECK(formatted.size() == length + 2);
        CHECK((formatted == L"<" + text + L">"));
    }
}

#ifndef _WIN32
// The Windows runtimes accept every argument.
TEST_CASE("FormatString_unformattable_argument_returns_the_format_and_is_logged") {
    CapturedLog log(LogFormat::Category);
    CHECK(QxMisc::FormatString(L"name %s", "\xFF\xFE") == L"name %s");
    CHECK(log.Joined() == L"[CQx] [QxMisc::FormatStringV] Caught a general exception\n");
}

TEST_CASE("LogError_unformattable_argument_logs_the_format") {
    CapturedLog log;
    LogError(L"name %s", "\xFF\xFE");
    CHECK(log.Joined() == L"[QxMisc::FormatStringV] Caught a general exception\nname %s\n");
}
#endif

TEST_CASE("FormatString_allocation_failure_returns_the_format_and_is_logged") {
    const std::wstring text(5000, L'x'); // outgrows the first buffer
    int failures = 0;
    for (bool happened = true; happened && failures < 100; ++failures) {
        CapturedLog log;
        std::wstring formatted;
        {
            const Allocations::FailOnce failure(static_cast<unsigned>(failures));
            formatted = QxMisc::FormatString(L"<%ls>", text.c_str());
            happened = failure.Happened();
        }
        if (happened) {
            CHECK(formatted == L"<%ls>");
            CHECK(log.Joined() == L"[QxMisc::FormatStringV] Caught a general exception\n");
        } else {
            CHECK(formatted.size() == text.size() + 2);
            CHECK(log.Texts().empty());
        }
    }
    CHECK(failures >= 3); // first buffer, longer buffer, success
}

TEST_CASE("FormatString_result_has_no_length_limit") {
    // NOLINTNEXTLINE(bugprone-string-constructor): the length is meant
    const std::wstring text(34'000'000, L'x');
    const std::wstring formatted = QxMisc::FormatString(L"<%ls>", text.c_str());
    CHECK(formatted.size() == text.size() + 2);
    CHECK(formatted.back() == L'>');
}

TEST_CASE("FillIn_values_replace_the_marks_in_order") {
    CHECK(QxMisc::FillIn(L"%s of %s", {L"one", L"two"}) == L"one of two");
    CHECK(QxMisc::FillIn(L"%s and %s", {L"only"}) == L"only and %s");
    CHECK(QxMisc::FillIn(L"%s", {L"a", L"surplus"}) == L"a");
    CHECK(QxMisc::FillIn(L"no mark", {L"a"}) == L"no mark");
    CHECK(QxMisc::FillIn(L"", {L"a"}) == L"");
}

TEST_CASE("FillIn_only_the_mark_is_interpreted") {
    CHECK(QxMisc::FillIn(L"%d %n 100%% %s%", {L"%s"}) == L"%d %n 100%% %s%");
    CHECK(QxMisc::FillIn(L"%s %s", {L"%s", L"b"}) == L"%s b");
}

TEST_CASE("ParseInt32_longest_prefix_is_read") {
    CHECK(QxMisc::ParseInt32(L"42") == 42);
    CHECK(QxMisc::ParseInt32(L"-42") == -42);
    CHECK(QxMisc::ParseInt32(L"+42") == 42);
    CHECK(QxMisc::ParseInt32(L" \t\n\v\f\r42abc") == 42);
    CHECK(QxMisc::ParseInt32(L"4 2") == 4);
    CHECK(QxMisc::ParseInt32(L"4.9") == 4);
    CHECK(QxMisc::ParseInt32(L"010") == 10);
    CHECK(QxMisc::ParseInt32(L"0x10") == 0);
    CHECK(QxMisc::ParseInt32(L"1F") == 1);
    CHECK(QxMisc::ParseInt32(L"123456"sv.substr(0, 3)) == 123);
}

TEST_CASE("ParseInt32_text_without_digits_is_zero") {
    for (const std::wstring_view text :
         {L""sv, L" "sv, L"x1"sv, L"-"sv, L"+-5"sv, L"- 5"sv, L"\x0661"sv, L"\0005"sv})
        CHECK(QxMisc::ParseInt32(text) == 0);
    CHECK(QxMisc::ParseInt32(L"7\0007"sv) == 7);
}

TEST_CASE("ParseInt32_value_beyond_32_bits_clamps") {
    CHECK(QxMisc::ParseInt32(L"2147483647") == MaxSigned);
    CHECK(QxMisc::ParseInt32(L"2147483648") == MaxSigned);
    CHECK(QxMisc::ParseInt32(L"-2147483648") == MinSigned);
    CHECK(QxMisc::ParseInt32(L"-2147483649") == MinSigned);
    CHECK(QxMisc::ParseInt32(L"4294967297") == MaxSigned);
    CHECK(QxMisc::ParseInt32(std::wstring(10000, L'9')) == MaxSigned);
    CHECK(QxMisc::ParseInt32(L"-" + std::wstring(10000, L'9')) == MinSigned);
}

TEST_CASE("ParseInt32_base_zero_detects_the_base_from_the_prefix") {
    CHECK(QxMisc::ParseInt32(L"0x1F", 0) == 31);
    CHECK(QxMisc::ParseInt32(L"-0XfF", 0) == -255);
    CHECK(QxMisc::ParseInt32(L"010", 0) == 8);
    CHECK(QxMisc::ParseInt32(L"08", 0) == 0);
    CHECK(QxMisc::ParseInt32(L"10", 0) == 10);
    CHECK(QxMisc::ParseInt32(L"0", 0) == 0);
    CHECK(QxMisc::ParseInt32(L"0x", 0) == 0);
    CHECK(QxMisc::ParseInt32(L"0xg", 0) == 0);
    CHECK(QxMisc::ParseInt32(L"0x80000000", 0) == MaxSigned);
}

TEST_CASE("ParseUInt32_reads_unsigned_numbers_of_any_base") {
    CHECK(QxMisc::ParseUInt32(L"4294967295") == 0xFFFFFFFFu);
    CHECK(QxMisc::ParseUInt32(L"4294967296") == 0xFFFFFFFFu);
    CHECK(QxMisc::ParseUInt32(L"0xFFFFFFFF") == 0xFFFFFFFFu);
    CHECK(QxMisc::ParseUInt32(L"037") == 31);
    CHECK(QxMisc::ParseUInt32(L" 7 ") == 7);
    CHECK(QxMisc::ParseUInt32(L"none") == 0);
}

TEST_CASE("ParseUInt32_minus_negates_modulo_32_bits") {
    CHECK(QxMisc::ParseUInt32(L"-1") == 0xFFFFFFFFu);
    CHECK(QxMisc::ParseUInt32(L"-4294967295") == 1);
    CHECK(QxMisc::ParseUInt32(L"-4294967296") == 0xFFFFFFFFu);
    CHECK(QxMisc::ParseUInt32(L"-0") == 0);
}

TEST_CASE("CopyText_writes_every_length_and_nothing_after_it") {
    std::wstring from;
    for (wchar_t length = 0; length < 40; ++length) {
        std::wstring to(40, L'-');
        CHECK(QxMisc::CopyText(to.data(), from) == to.data() + length);
        CHECK(to == from + std::wstring(static_cast<std::size_t>(40 - length), L'-'));
        from += static_cast<wchar_t>(L'A' + length);
    }
}

TEST_CASE("FormatInt32_limits_are_written") {
    CHECK(QxMisc::FormatInt32(0) == L"0");
    CHECK(QxMisc::FormatInt32(MaxSigned) == L"2147483647");
    CHECK(QxMisc::FormatInt32(MinSigned) == L"-2147483648");
}

TEST_CASE("FormatInt32_every_number_of_digits_is_written") {
    const auto check = [](std::int64_t value) {
        if (value >= MinSigned && value <= MaxSigned)
            CHECK(QxMisc::FormatInt32(static_cast<std::int32_t>(value)) == std::to_wstring(value));
    };
    // The number of digits is computed from the number of bits.
    for (int bits = 0; bits < 32; ++bits) {
        for (std::int64_t near = -1; near <= 1; ++near) {
            check((std::int64_t{1} << bits) + near);
            check(-(std::int64_t{1} << bits) + near);
        }
    }
    for (std::int64_t power = 1; power <= MaxSigned; power *= 10) {
        for (std::int64_t near = -1; near <= 1; ++near) {
            check(power + near);
            check(-power + near);
        }
    }
}

TEST_CASE("LowerLetter_changes_only_ASCII_letters") {
    CHECK(QxMisc::LowerLetter(L'A') == L'a');
    CHECK(QxMisc::LowerLetter(L'Z') == L'z');
    for (const wchar_t c : {L'a', L'z', L'0', L'[', L'@', L'`', L'{', L'\x00C4', L'\x0130', L'\x212A'})
        CHECK(QxMisc::LowerLetter(c) == c);
}

TEST_CASE("EqualsIgnoreCase_compares_whole_texts") {
    CHECK(QxMisc::EqualsIgnoreCase(L"Duplex", L"dUPLEX"));
    CHECK(QxMisc::EqualsIgnoreCase(L"", L""));
    CHECK_FALSE(QxMisc::EqualsIgnoreCase(L"Duplex", L"Duple"));
    CHECK_FALSE(QxMisc::EqualsIgnoreCase(L"[", L"{"));
}

TEST_CASE("Contains_finds_a_part") {
    CHECK(QxMisc::Contains(L"abc", L"bc"));
    CHECK(QxMisc::Contains(L"abc", L""));
    CHECK_FALSE(QxMisc::Contains(L"abc", L"cb"));
}

TEST_CASE("ReplaceAll_replaces_in_one_pass") {
    CHECK(Replaced(L"50% of 10%", L"%", L"%%") == L"50%% of 10%%");
    CHECK(Replaced(L"aaab", L"aa", L"a") == L"aab");
    CHECK(Replaced(L"a,b,c", L",", L"") == L"abc");
    CHECK(Replaced(L"abc", L"x", L"y") == L"abc");
    CHECK(Replaced(L"abc", L"", L"y") == L"abc");
    CHECK(Replaced(L"", L"a", L"y") == L"");
}

TEST_CASE("Bool_is_written_in_lower_case") {
    CHECK(std::wstring(QxMisc::FormatBool(true)) == L"true");
    CHECK(std::wstring(QxMisc::FormatBool(false)) == L"false");
}

TEST_CASE("Bool_only_true_and_1_read_as_true") {
    for (const wchar_t* text : {L"true", L"TRUE", L"True", L"tRuE", L"1"})
        CHECK(QxMisc::ParseBool(text));
    for (const wchar_t* text : {L"false", L"0", L"yes", L"", L" true", L"true ", L"01", L"2", L"11", L"tru"})
        CHECK_FALSE(QxMisc::ParseBool(text));
}
