#define CATCH_CONFIG_MAIN
// The signal handler's stack has a size that is no constant in current C libraries.
#define CATCH_CONFIG_NO_POSIX_SIGNALS
#include <catch2/catch.hpp>
