#include "../CapturedLog.h"
#include "TestKey.h"

#include "common/QxRegistryHdl.h"
#include "common/QxSystem.h"
#include "tests/support/ImportPatch.h"

#include <catch2/catch.hpp>

#include <cstdint>
#include <string>

namespace {

/// One key per process, because tests run in parallel.
const std::wstring KeyPathText = L"Software\\JobObjectsRegistryTest" + std::to_wstring(GetCurrentProcessId());
const wchar_t* const KeyPath = KeyPathText.c_str();

/// The value's text; "unchanged" if reading fails.
std::wstring StringOf(QxRegistryHdl& key, const wchar_t* name) {
    QxString value = L"unchanged";
    const bool read = key.ReadString(name, value);
    CHECK(read == !(value == L"unchanged"));
    return std::wstring(value.view());
}

/// Whether a key is held: without one, a read fails with an invalid handle. Changes LastError.
bool HoldsKey(QxRegistryHdl& key) {
    std::uint32_t value = 0;
    CHECK_FALSE(key.ReadNumber(L"no such value", value));
    return key.LastError() != ERROR_INVALID_HANDLE;
}

LSTATUS WINAPI RefuseToClose(HKEY) {
    return ERROR_INVALID_HANDLE;
}

} // namespace

TEST_CASE("TestKey_is_empty_after_an_aborted_test") {
    HKEY left = nullptr;
    REQUIRE(RegCreateKeyExW(HKEY_CURRENT_USER, (KeyPathText + L"\\Log").c_str(), 0, nullptr, 0,
                            KEY_ALL_ACCESS, nullptr, &left, nullptr) == ERROR_SUCCESS);
    RegCloseKey(left);
    const TestKey stored(KeyPath);
    QxRegistryHdl key;
    CHECK_FALSE(key.Open(HKEY_CURRENT_USER, (KeyPathText + L"\\Log").c_str(), KEY_READ));
}

TEST_CASE("RegistryHdl_failed_close_is_logged_and_drops_the_key") {
    const TestKey stored(KeyPath);
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    CapturedLog log(LogFormat::Category);
    {
        const ImportPatch patch(GetModuleHandleW(nullptr), "RegCloseKey",
                                reinterpret_cast<void*>(RefuseToClose));
        key.Close();
        key.Close();
    }
    CHECK(log.Joined() ==
          L"[CQx] [QxRegistryHdl::Close] " + QxMisc::GetSystemMessage(ERROR_INVALID_HANDLE) + L"\n");
    CHECK(key.LastError() == ERROR_INVALID_HANDLE);
    CHECK_FALSE(HoldsKey(key));
}

TEST_CASE("RegistryHdl_missing_key_is_reported_with_its_code") {
    QxRegistryHdl key;
    CHECK_FALSE(key.Open(HKEY_CURRENT_USER, L"Software\\JobObjectsNoSuchKey", KEY_READ));
    CHECK(key.LastError() == ERROR_FILE_NOT_FOUND);
    CHECK_FALSE(HoldsKey(key));
}

TEST_CASE("RegistryHdl_opening_closes_the_old_key") {
    const TestKey stored(KeyPath);
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    REQUIRE(HoldsKey(key));
    CHECK_FALSE(key.Open(HKEY_CURRENT_USER, L"Software\\JobObjectsNoSuchKey", KEY_READ));
    CHECK_FALSE(HoldsKey(key));
}

TEST_CASE("RegistryHdl_closing_twice_is_harmless") {
    const TestKey stored(KeyPath);
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    key.Close();
    key.Close();
    CHECK(key.LastError() == 0);
    CHECK_FALSE(HoldsKey(key));
}

TEST_CASE("RegistryHdl_numbers_are_read_only_from_32_bit_values") {
    TestKey stored(KeyPath);
    REQUIRE(stored.Put(L"Number", 0xFEDCBA98u));
    REQUIRE(stored.Put(L"Text", L"5"));
    const std::uint64_t wide = 5;
    REQUIRE(stored.Put(L"Wide", REG_QWORD, &wide, sizeof(wide)));
    REQUIRE(stored.Put(L"Binary", REG_BINARY, &wide, 4));
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));

    std::uint32_t value = 7;
    CHECK_FALSE(key.ReadNumber(L"Missing", value));
    CHECK(key.LastError() == ERROR_FILE_NOT_FOUND);
    CHECK_FALSE(key.ReadNumber(L"Wide", value));
    CHECK(key.LastError() == ERROR_MORE_DATA);
    CHECK_FALSE(key.ReadNumber(L"Text", value));
    CHECK_FALSE(key.ReadNumber(L"Binary", value));
    CHECK(value == 7);
    CHECK(key.ReadNumber(L"Number", value));
    CHECK(value == 0xFEDCBA98u);
}

TEST_CASE("RegistryHdl_short_number_is_refused") {
    TestKey stored(KeyPath);
    const std::uint32_t number = 5;
    REQUIRE(stored.Put(L"Short", REG_DWORD, &number, 2));
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    std::uint32_t value = 7;
    CHECK_FALSE(key.ReadNumber(L"Short", value));
    CHECK(value == 7);
}

TEST_CASE("RegistryHdl_any_nonzero_number_is_true") {
    TestKey stored(KeyPath);
    REQUIRE(stored.Put(L"Zero", 0u));
    REQUIRE(stored.Put(L"One", 1u));
    REQUIRE(stored.Put(L"High", 0x80000000u));
    REQUIRE(stored.Put(L"Text", L"true"));
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    bool value = true;
    CHECK(key.ReadBool(L"Zero", value));
    CHECK_FALSE(value);
    CHECK(key.ReadBool(L"High", value));
    CHECK(value);
    value = false;
    CHECK(key.ReadBool(L"One", value));
    CHECK(value);
    CHECK_FALSE(key.ReadBool(L"Text", value));
    CHECK_FALSE(key.ReadBool(L"Missing", value));
    CHECK(value);
}

TEST_CASE("RegistryHdl_strings_are_read_as_stored") {
    TestKey stored(KeyPath);
    REQUIRE(stored.Put(L"Plain", L"text \x20AC"));
    REQUIRE(stored.Put(L"Expandable", L"%TEMP%\\a.log", REG_EXPAND_SZ));
    REQUIRE(stored.Put(L"Empty", L""));
    REQUIRE(stored.Put(L"Unterminated", REG_SZ, L"abcdef", 3 * sizeof(wchar_t)));
    REQUIRE(stored.Put(L"Odd", REG_SZ, L"abcdef", 5));
    REQUIRE(stored.Put(L"TwoEnds", REG_SZ, L"ab\0cd", 6 * sizeof(wchar_t)));
    REQUIRE(stored.Put(L"Nothing", REG_SZ, nullptr, 0));
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    CHECK(StringOf(key, L"Plain") == L"text \x20AC");
    CHECK(StringOf(key, L"Expandable") == L"%TEMP%\\a.log");
    CHECK(StringOf(key, L"Empty").empty());
    CHECK(StringOf(key, L"Unterminated") == L"abc");
    CHECK(StringOf(key, L"Odd") == L"ab");
    CHECK(StringOf(key, L"TwoEnds") == L"ab");
    CHECK(StringOf(key, L"Nothing").empty());
}

TEST_CASE("RegistryHdl_other_types_are_not_strings") {
    TestKey stored(KeyPath);
    REQUIRE(stored.Put(L"Number", 5u));
    REQUIRE(stored.Put(L"Several", REG_MULTI_SZ, L"a\0b\0", 5 * sizeof(wchar_t)));
    REQUIRE(stored.Put(L"Binary", REG_BINARY, L"abc", 8));
    QxRegistryHdl key;
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    for (const wchar_t* name : {L"Number", L"Several", L"Binary", L"Missing"}) {
        CHECK(StringOf(key, name) == L"unchanged");
        CHECK(key.LastError() != 0);
    }
}

TEST_CASE("RegistryHdl_creates_a_key_and_writes_its_strings") {
    const TestKey stored(KeyPath);
    const std::wstring created = KeyPathText + L"\\Created";
    QxRegistryHdl key;
    REQUIRE(key.Create(HKEY_CURRENT_USER, created.c_str()));
    CHECK(key.WriteString(nullptr, L"default"));
    CHECK(key.WriteString(L"Name", L""));
    REQUIRE(key.Open(HKEY_CURRENT_USER, created.c_str(), KEY_READ));
    CHECK(StringOf(key, nullptr) == L"default");
    CHECK(StringOf(key, L"Name").empty());
}

TEST_CASE("RegistryHdl_keeps_the_reason_why_a_key_cannot_be_created_or_written") {
    const TestKey stored(KeyPath);
    QxRegistryHdl key;
    CHECK_FALSE(key.Create(HKEY_CURRENT_USER, std::wstring(300, L'x').c_str()));
    CHECK(key.LastError() != ERROR_SUCCESS);
    CHECK_FALSE(HoldsKey(key));
    REQUIRE(key.Open(HKEY_CURRENT_USER, KeyPath, KEY_READ));
    CHECK_FALSE(key.WriteString(L"Name", L"text"));
    CHECK(key.LastError() == ERROR_ACCESS_DENIED);
}
