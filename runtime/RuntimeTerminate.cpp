#include <cstddef> // defines __GLIBCXX__

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// Ends the process for an uncaught exception. GCC's own handler first prints the exception's type to the
// host's standard error output, and links the demangler: a tenth of the library.

#include <cstdlib>

namespace __gnu_cxx {
// Name of the runtime. NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void __verbose_terminate_handler();
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void __verbose_terminate_handler() {
    std::abort();
}
} // namespace __gnu_cxx

#endif
