#define CATCH_CONFIG_MAIN
// Current C libraries do not define the signal stack's size as a constant.
#define CATCH_CONFIG_NO_POSIX_SIGNALS
// Linked without -municode, so the entry point is main, not wmain.
#define DO_NOT_USE_WMAIN
#include <catch2/catch.hpp>
