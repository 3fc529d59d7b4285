#pragma once

#include <windows.h>

/// Ends the process with a message that tells where it was when a step crashes, or takes more than two
/// minutes. One at a time.
class Watchdog {
public:
    /// The name is kept as a pointer.
    explicit Watchdog(const char* test, unsigned long seed);
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog();

    /// Begins the next step: its number and what is under test in it.
    void Step(int number, const wchar_t* subject);

private:
    HANDLE m_end;
    HANDLE m_thread;
};
