#include "LogStamp.h"

#include <cerrno>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

LogStamp LogPlatform::CurrentStamp() noexcept {
    const std::time_t now = std::time(nullptr);
    std::tm t{};
    localtime_r(&now, &t);
    return {t.tm_year + 1900,
            t.tm_mon + 1,
            t.tm_mday,
            t.tm_hour,
            t.tm_min,
            t.tm_sec,
            static_cast<std::uint32_t>(getpid()),
            CurrentThreadId()};
}

std::uint32_t LogPlatform::CurrentThreadId() noexcept {
    return static_cast<std::uint32_t>(syscall(SYS_gettid));
}

LogPlatform::LastErrorKeeper::LastErrorKeeper() noexcept : m_error(static_cast<unsigned long>(errno)) {
}

LogPlatform::LastErrorKeeper::~LastErrorKeeper() {
    errno = static_cast<int>(m_error);
}
