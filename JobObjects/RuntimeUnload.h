#pragma once

/// Gives back what the compiler's statically linked runtime has taken from the process and would leave behind
/// when the library is unloaded. Called last; nothing may throw afterwards.
void ReleaseRuntime() noexcept;
