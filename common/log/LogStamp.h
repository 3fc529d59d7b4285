#pragma once

#include <cstdint>

/// What a line's header says about the moment and the caller.
struct LogStamp {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0; // local time
    std::uint32_t processId = 0;
    std::uint32_t threadId = 0;
};

/// All that the log needs from the platform; one source file per platform implements it.
namespace LogPlatform {

LogStamp CurrentStamp() noexcept;
/// Never 0.
std::uint32_t CurrentThreadId() noexcept;

/// Gives the calling thread its last error code back, so that a log call between a failed system call and
/// the look at its error changes nothing.
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
