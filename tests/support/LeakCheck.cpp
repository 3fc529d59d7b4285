#define CATCH_CONFIG_EXTERNAL_INTERFACES
#include "tests/support/ComClient.h"

namespace {

/// Fails any test that leaks an object, a class object or a lock: the library must be unloadable.
class LeakCheck : public Catch::TestEventListenerBase {
public:
    using Base = Catch::TestEventListenerBase;
    using Base::Base;

    void testCaseStarting(const Catch::TestCaseInfo& info) override {
        Base::testCaseStarting(info);
        m_name = info.name;
        SetErrorInfo(0, nullptr);
    }
    void testCaseEnded(const Catch::TestCaseStats& stats) override {
        SetErrorInfo(0, nullptr); // error information may belong to the test's own objects
        if (AskLibraryToUnload() != S_OK) {
            std::fprintf(stderr, "%s leaves objects of the library alive\n", m_name.c_str());
            std::fflush(stderr);
            ExitProcess(254);
        }
        Base::testCaseEnded(stats);
    }

private:
    std::string m_name;
};

CATCH_REGISTER_LISTENER(LeakCheck)

} // namespace
