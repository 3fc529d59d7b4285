#define CATCH_CONFIG_RUNNER
// Current C libraries do not define the signal stack's size as a constant.
#define CATCH_CONFIG_NO_POSIX_SIGNALS
#include <catch2/catch.hpp>

int main(int argc, char** argv) {
    return Catch::Session().run(argc, argv);
}
