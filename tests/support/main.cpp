#define CATCH_CONFIG_RUNNER
#include <catch2/catch.hpp>

#include <objbase.h>

int main(int argc, char** argv) {
    const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (FAILED(result))
        return 255;
    const int failed = Catch::Session().run(argc, argv);
    CoUninitialize();
    return failed;
}
