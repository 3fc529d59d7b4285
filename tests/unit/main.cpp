#define CATCH_CONFIG_MAIN
// The signal handler's stack has a size that is no constant in current C libraries.
#define CATCH_CONFIG_NO_POSIX_SIGNALS
// The program is linked without -municode, so it starts at main and not at wmain.
#define DO_NOT_USE_WMAIN
#include <catch2/catch.hpp>
