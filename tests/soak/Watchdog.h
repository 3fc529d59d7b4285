#pragma once

#include <windows.h>

/// Ends the process with the current step's number and subject when a step crashes or takes more than two
/// minutes. At most one instance at a time.
class Watchdog {
public:
    /// Does not copy the name.
    explicit Watchdog(const char* test, unsigned long seed);
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog();

    /// Starts the next step, with its number and the subject under test.
    void Step(int number, const wchar_t* subject);

private:
    HANDLE m_end;
    HANDLE m_thread;
};
