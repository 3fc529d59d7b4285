#define CATCH_CONFIG_EXTERNAL_INTERFACES
#include "tests/support/ComClient.h"

namespace {

/// Fails any test that leaks an object, a class object or a lock: the library must be unloadable.
struct LeakCheck : Catch::TestEventListenerBase {
    using TestEventListenerBase::TestEventListenerBase;

    void testCaseStarting(const Catch::TestCaseInfo& info) override {
        TestEventListenerBase::testCaseStarting(info);
        SetErrorInfo(0, nullptr);
    }
    void testCaseEnded(const Catch::TestCaseStats& stats) override {
        SetErrorInfo(0, nullptr); // error information may belong to the test's own objects
        if (AskLibraryToUnload() != S_OK) {
            std::fprintf(stderr, "%s leaves objects of the library alive\n", stats.testInfo.name.c_str());
            std::fflush(stderr);
            ExitProcess(254);
        }
        TestEventListenerBase::testCaseEnded(stats);
    }
};

CATCH_REGISTER_LISTENER(LeakCheck)

} // namespace
