#include <cstddef> // defines __GLIBCXX__

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// Ends the process for an exception without a handler, as other runtimes do. GCC's own handler first prints
// the exception's type to the standard error output, which belongs to the host, and brings the decoder of
// type names with it: a tenth of the library.

#include <cstdlib>

namespace __gnu_cxx {
// The runtime's name. NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void __verbose_terminate_handler();
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
void __verbose_terminate_handler() {
    std::abort();
}
} // namespace __gnu_cxx

#endif
