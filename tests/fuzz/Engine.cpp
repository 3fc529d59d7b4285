// Connects a harness to libFuzzer.

#include "Fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    RunInput(std::string_view(reinterpret_cast<const char*>(bytes), size));
    return 0;
}
