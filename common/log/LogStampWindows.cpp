#include "LogStamp.h"

#include <windows.h>

LogStamp LogPlatform::CurrentStamp() noexcept {
    SYSTEMTIME now;
    GetLocalTime(&now);
    return {
        now.wYear,           now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond, GetCurrentProcessId(),
        GetCurrentThreadId()};
}

std::uint32_t LogPlatform::CurrentThreadId() noexcept {
    return GetCurrentThreadId();
}

LogPlatform::LastErrorKeeper::LastErrorKeeper() noexcept : m_error(GetLastError()) {
}

LogPlatform::LastErrorKeeper::~LastErrorKeeper() {
    SetLastError(m_error);
}
