#include <cstddef> // says whose runtime this is

#if defined(__MINGW32__) && defined(__GLIBCXX__)

// When an exception has nowhere to go, GCC's runtime first prints the exception's type to the standard error
// output. A library has no business there, and the decoder of type names that this takes would be a tenth of
// the library. So it ends the process as other runtimes do.

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
