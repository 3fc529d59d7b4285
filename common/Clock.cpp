#include "Clock.h"

#include <windows.h>

namespace {

QxDateTime FromSystemTime(const SYSTEMTIME& time) noexcept {
    return QxDateTime::FromCalendar(
        {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond});
}

} // namespace

QxDateTime Clock::LocalNow() noexcept {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return FromSystemTime(now);
}

QxDateTime Clock::UtcNow() noexcept {
    SYSTEMTIME now;
    GetSystemTime(&now);
    return FromSystemTime(now);
}
