#pragma once

#include <cstdint>

/// Time, process and thread for a line's header.
struct LogStamp {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0; // local time
    std::uint32_t processId = 0;
    std::uint32_t threadId = 0;
};

/// The log's platform layer, one source file per platform.
namespace LogPlatform {

LogStamp CurrentStamp() noexcept;
/// Never 0.
std::uint32_t CurrentThreadId() noexcept;

/// Restores the thread's last error, so that a caller may log before it reads the error of a failed call.
class LastErrorKeeper {
public:
    LastErrorKeeper() noexcept;
    ~LastErrorKeeper();
    LastErrorKeeper(const LastErrorKeeper&) = delete;
    LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

private:
    unsigned long m_error;
};

} // namespace LogPlatform
