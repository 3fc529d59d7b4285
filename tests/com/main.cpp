#define CATCH_CONFIG_MAIN
#define DO_NOT_USE_WMAIN
#include <catch2/catch.hpp>
