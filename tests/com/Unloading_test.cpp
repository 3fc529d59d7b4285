#include "tests/support/ComClient.h"
#include "tests/support/ProcessCounters.h"

#include <cstdio>
#include <cstdlib>

// A host may load and unload the library any number of times. The environment variable UNLOAD_CYCLES sets the
// number.

namespace {

void UseOnce() {
    const auto job = CreatePrintJob();
    CHECK_HR(Put(job, &IPrintJob::put_UserName, L"anna"), S_OK);
    const std::wstring xml = Text(job, &IPrintJob::get_Xml);
    CHECK_HR(Put(CreatePrintJob(), &IPrintJob::put_Xml, xml), S_OK);
    CHECK_HR(Put(job, &IPrintJob::put_Xml, L"<Wrong/>"), E_FAIL); // throws inside
    SetErrorInfo(0, nullptr);
}

void UnloadLibrary() {
    CoFreeUnusedLibrariesEx(0, 0);
    REQUIRE(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
}

int Cycles() {
    const char* text = std::getenv("UNLOAD_CYCLES");
    return text ? static_cast<int>(std::strtol(text, nullptr, 10)) : 500;
}

} // namespace

TEST_CASE("Unloading_after_use_and_a_failing_call_leaves_nothing_behind") {
    // Warm up: COM and the system cache what they load on first use.
    for (int i = 0; i < 20; ++i) {
        UseOnce();
        UnloadLibrary();
    }
    const ProcessCounters before = ProcessCounters::Now();
    const int cycles = Cycles();
    for (int i = 0; i < cycles; ++i) {
        UseOnce();
        UnloadLibrary();
    }
    const ProcessCounters after = ProcessCounters::Now();
    std::printf("%d cycles: %s\n", cycles, Growth(before, after).c_str());
    REQUIRE(cycles > 0);
    CHECK_NO_GROWTH(before, after, cycles);
}
