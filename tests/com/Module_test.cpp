#include "JobObjects/CJobObjectsModule.h"

#include "JobObjects.h"

#include <catch2/catch.hpp>

// The module object by itself, linked into the test: what it does for the library's own code.

namespace {

CJobObjectsModule& InitializedModule() {
    TheModule().Initialize(GetModuleHandleW(nullptr));
    return TheModule();
}

int callbackRuns = 0;

void CountRun(void* context) noexcept {
    callbackRuns += *static_cast<int*>(context);
}

} // namespace

TEST_CASE("Module_before_initialisation_hands_out_no_class_object") {
    void* object = &callbackRuns;
    CHECK(TheModule().GetClassObject(CLSID_PrintJob, IID_IUnknown, &object) == E_UNEXPECTED);
    CHECK(object == nullptr);
    CHECK(TheModule().GetClassObject(CLSID_PrintJob, IID_IUnknown, nullptr) == E_POINTER);
}

TEST_CASE("Module_lock_count_gives_the_new_value") {
    CJobObjectsModule& module = InitializedModule();
    CHECK(module.Lock() == 1);
    CHECK(module.Lock() == 2);
    CHECK(module.Unlock() == 1);
    CHECK(module.Unlock() == 0);
    CHECK(module.LockCount() == 0);
}

TEST_CASE("Module_global_interface_table_is_made_once_and_counted_for_the_caller") {
    CJobObjectsModule& module = InitializedModule();
    CHECK(module.GetGlobalInterfaceTable(nullptr) == E_POINTER);
    IGlobalInterfaceTable* first = nullptr;
    IGlobalInterfaceTable* second = nullptr;
    REQUIRE(module.GetGlobalInterfaceTable(&first) == S_OK);
    REQUIRE(module.GetGlobalInterfaceTable(&second) == S_OK);
    CHECK(first == second);
    REQUIRE(first != nullptr);
    first->Release();
    second->Release();
    module.Terminate();
}

TEST_CASE("Module_termination_callbacks_run_once") {
    CJobObjectsModule& module = InitializedModule();
    callbackRuns = 0;
    int one = 1;
    int ten = 10;
    REQUIRE(module.AddTerminationCallback(CountRun, &one) == S_OK);
    REQUIRE(module.AddTerminationCallback(CountRun, &ten) == S_OK);
    CHECK(callbackRuns == 0);
    module.Terminate();
    CHECK(callbackRuns == 11);
    module.Terminate();
    CHECK(callbackRuns == 11);
}

TEST_CASE("Module_class_object_is_cached_until_termination") {
    CJobObjectsModule& module = InitializedModule();
    IUnknown* first = nullptr;
    IUnknown* second = nullptr;
    REQUIRE(module.GetClassObject(CLSID_CopyLine, IID_IUnknown, reinterpret_cast<void**>(&first)) == S_OK);
    REQUIRE(module.GetClassObject(CLSID_CopyLine, IID_IUnknown, reinterpret_cast<void**>(&second)) == S_OK);
    CHECK(first == second);
    CHECK(module.LockCount() == 1); // the clients' references, not the cache's
    first->Release();
    second->Release();
    CHECK(module.LockCount() == 0);
    module.Terminate();
}
