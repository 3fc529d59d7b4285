#include "../CapturedLog.h"
#include "common/QxTHandle.h"

#include <catch2/catch.hpp>

#include <string>
#include <type_traits>

namespace {

int closed = 0;
DWORD refusal = 0;

/// Counts the calls and fails with the given error.
struct TestCloser {
    static bool Close(HANDLE) noexcept {
        ++closed;
        SetLastError(refusal);
        return refusal == 0;
    }
};
using TestHandle = QxTHandle<HANDLE, TestCloser>;

HANDLE Some() {
    closed = 0;
    refusal = 0;
    return reinterpret_cast<HANDLE>(0x1234);
}

} // namespace

static_assert(!std::is_copy_constructible_v<TestHandle> && !std::is_copy_assignable_v<TestHandle>);

TEST_CASE("THandle_null_and_invalid_handle_are_not_closed") {
    Some();
    {
        TestHandle null, invalid(INVALID_HANDLE_VALUE);
        CHECK_FALSE(null.IsOpen());
        CHECK_FALSE(invalid.IsOpen());
        null.Close();
        invalid.Close();
    }
    CHECK(closed == 0);
}

TEST_CASE("THandle_closing_twice_is_harmless") {
    TestHandle handle(Some());
    CHECK(handle.IsOpen());
    handle.Close();
    CHECK(handle.Get() == nullptr);
    handle.Close();
    CHECK(closed == 1);
    CHECK(handle.LastError() == 0);
}

TEST_CASE("THandle_failed_close_is_recorded_and_logged_and_drops_the_handle") {
    CapturedLog log(LogFormat::Category);
    {
        TestHandle handle(Some());
        refusal = ERROR_ACCESS_DENIED;
        handle.Close();
        CHECK(handle.LastError() == ERROR_ACCESS_DENIED);
        CHECK(handle.Get() == nullptr);
    }
    CHECK(closed == 1);
    CHECK(log.Joined() ==
          L"[CQx] [QxTHandle<T, U>::Close] " + QxMisc::GetSystemMessage(ERROR_ACCESS_DENIED) + L"\n");
}

TEST_CASE("THandle_destruction_closes") {
    {
        const TestHandle handle(Some());
    }
    CHECK(closed == 1);
}

TEST_CASE("THandle_kernel_handle_is_really_closed") {
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    REQUIRE(event != nullptr);
    {
        const QxKernelHandle handle(event);
    }
    CHECK(WaitForSingleObject(event, 0) == WAIT_FAILED);
}
