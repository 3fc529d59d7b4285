#include "../Allocations.h"
#include "../CapturedLog.h"
#include "common/Clock.h"
#include "common/QxSystem.h"
#include "tests/support/ImportPatch.h"

#include <catch2/catch.hpp>

#include <cmath>
#include <string>
#include <vector>

namespace {

/// A code without a system message.
constexpr DWORD UnknownCode = 0xE1234ABC;

std::vector<DWORD> languages;
decltype(&FormatMessageW) formatMessage = nullptr;

DWORD WINAPI NoteLanguage(DWORD flags, const void* source, DWORD message, DWORD language, wchar_t* buffer,
                          DWORD size, va_list* arguments) {
    languages.push_back(language);
    return formatMessage(flags, source, message, language, buffer, size, arguments);
}

} // namespace

TEST_CASE("GetModuleFileName_returns_the_full_path") {
    const std::wstring path = QxMisc::GetModuleFileName(nullptr);
    CHECK(GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES);
    CHECK(path.find(L'\0') == std::wstring::npos);
    CHECK(path.find(L'\\') != std::wstring::npos);
    CHECK(QxMisc::GetModuleFileName(GetModuleHandleW(L"kernel32.dll")).find(L"kernel32") !=
          std::wstring::npos);
}

TEST_CASE("GetModuleFileName_failure_is_empty_and_logged") {
    CapturedLog log(LogFormat::Category);
    CHECK(QxMisc::GetModuleFileName(reinterpret_cast<HMODULE>(0x10)).empty());
    const std::wstring text = log.Joined();
    CHECK(text.substr(0, 34) == L"[CQx] [QxMisc::GetModuleFileName] ");
}

TEST_CASE("GetSystemMessage_is_one_trimmed_line") {
    const std::wstring text = QxMisc::GetSystemMessage(ERROR_ACCESS_DENIED);
    REQUIRE_FALSE(text.empty());
    CHECK(text.find_first_of(L"\r\n") == std::wstring::npos);
    CHECK(text.front() != L' ');
    CHECK(text.back() != L' ');
}

TEST_CASE("GetSystemMessage_percent_signs_are_doubled") {
    // The text has inserts, which remain.
    const std::wstring text = QxMisc::GetSystemMessage(ERROR_BAD_EXE_FORMAT);
    CHECK(text.find(L"%%1") != std::wstring::npos);
}

TEST_CASE("GetSystemMessage_unknown_code_is_empty_and_logged_once") {
    CapturedLog log(LogFormat::Category);
    CHECK(QxMisc::GetSystemMessage(UnknownCode).empty());
    REQUIRE(log.Texts().size() == 1);
    const std::wstring prefix = L"[CQx] [QxMisc::GetSystemMessage(0xE1234ABC)] ";
    CHECK(log.Texts()[0].substr(0, prefix.size()) == prefix);
}

TEST_CASE("GetSystemMessage_and_the_reason_of_its_failure_are_in_the_system_s_language") {
    const ImportPatch patch(GetModuleHandleW(nullptr), "FormatMessageW",
                            reinterpret_cast<void*>(NoteLanguage));
    formatMessage = reinterpret_cast<decltype(formatMessage)>(patch.Original());
    QxMisc::GetSystemMessage(UnknownCode);
    CHECK(languages == std::vector<DWORD>{0, 0}); // the system chooses
}

TEST_CASE("GetSystemMessage_allocation_failure_is_empty_and_logged") {
    CapturedLog log(LogFormat::Category);
    bool happened = false;
    {
        const Allocations::FailOnce failure(0);
        CHECK(QxMisc::GetSystemMessage(ERROR_ACCESS_DENIED).empty());
        happened = failure.Happened();
    }
    CHECK(happened);
    CHECK(log.Joined() == L"[CQx] [QxMisc::GetSystemMessage] Caught a general exception\n");
}

TEST_CASE("GetSystemMessage_prefix_comes_first") {
    CHECK(QxMisc::GetSystemMessage(L"[a] ", ERROR_ACCESS_DENIED) ==
          L"[a] " + QxMisc::GetSystemMessage(ERROR_ACCESS_DENIED));
}

TEST_CASE("LogSystemError_writes_prefix_and_text_with_single_percent_signs") {
    CapturedLog log;
    QxMisc::LogSystemError(LogUtility, L"[a] ", ERROR_BAD_EXE_FORMAT);
    const std::wstring text = log.Joined();
    CHECK(text.substr(0, 4) == L"[a] ");
    CHECK(text.find(L"%1") != std::wstring::npos);
    CHECK(text.find(L"%%") == std::wstring::npos);
}

TEST_CASE("Clock_local_and_utc_are_whole_seconds_of_the_system") {
    SYSTEMTIME local, utc;
    GetLocalTime(&local);
    GetSystemTime(&utc);
    const QxDateTime localNow = Clock::LocalNow(), utcNow = Clock::UtcNow();
    const auto fromSystem = [](const SYSTEMTIME& t) {
        return QxDateTime::FromCalendar({t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond}).Value();
    };
    REQUIRE(localNow.IsValid());
    REQUIRE(utcNow.IsValid());
    CHECK(std::fabs(localNow.Value() - fromSystem(local)) < 5.0 / 86400);
    CHECK(std::fabs(utcNow.Value() - fromSystem(utc)) < 5.0 / 86400);
    const double seconds = utcNow.Value() * 86400;
    CHECK(std::fabs(seconds - std::round(seconds)) < 0.001);
}
