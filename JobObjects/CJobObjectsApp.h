#pragma once

#include <windows.h>

/// Start-up and shut-down of the library in a process.
class CJobObjectsApp {
public:
    /// Stores the library's handle and configures the diagnostic log. Runs under the loader lock: it must not
    /// wait or load a library.
    bool InitInstance(HINSTANCE instance) noexcept;
    /// Releases the module, the catalogue and the log. Not called at the end of the process: the system frees
    /// everything, and other libraries may already be unloaded.
    void ExitInstance() noexcept;
};
