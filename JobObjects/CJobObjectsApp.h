#pragma once

#include <windows.h>

/// The library as an application: what it does when it is attached to a process and when it leaves it.
class CJobObjectsApp {
public:
    /// Remembers the library's handle, configures the diagnostic log and names its source. Runs under the
    /// loader lock: it waits for nothing and loads nothing.
    bool InitInstance(HINSTANCE instance) noexcept;
    /// Gives back what the module, the catalogue and the log hold. Not called at the end of the process: the
    /// system takes all then, and other libraries may be gone already.
    void ExitInstance() noexcept;
};
