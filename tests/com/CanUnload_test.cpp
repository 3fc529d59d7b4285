#include "tests/support/ComClient.h"
#include "tests/support/Library.h"

// Every live instance, class object and lock keeps the library loaded.

namespace {

ComPtr<IClassFactory> ClassObject(const Library& library, const LibraryClass& of) {
    ComPtr<IClassFactory> factory;
    REQUIRE_HR(library.GetClassObject(of.classId, IID_IClassFactory, factory.PutVoid()), S_OK);
    return factory;
}

} // namespace

TEST_CASE("CanUnload_of_a_newly_loaded_library_is_granted") {
    const Library library;
    CHECK_HR(library.CanUnloadNow(), S_OK);
    CHECK_HR(library.CanUnloadNow(), S_OK);
}

TEST_CASE("CanUnload_is_refused_while_an_instance_of_any_class_lives") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        ComPtr<IUnknown> object;
        REQUIRE_HR(
            CoCreateInstance(each.classId, nullptr, CLSCTX_INPROC_SERVER, each.interfaceId, object.PutVoid()),
            S_OK);
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        ComPtr<IUnknown> second(object);
        object = {};
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        second = {};
        CHECK_HR(library.CanUnloadNow(), S_OK);
    }
}

TEST_CASE("CanUnload_is_granted_after_the_last_of_several_instances_only") {
    const Library library;
    std::vector<ComPtr<IUnknown>> objects(LibraryClasses().size());
    for (std::size_t i = 0; i < objects.size(); ++i)
        REQUIRE_HR(CoCreateInstance(LibraryClasses()[i].classId, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                    objects[i].PutVoid()),
                   S_OK);
    while (!objects.empty()) {
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        objects.pop_back();
    }
    CHECK_HR(library.CanUnloadNow(), S_OK);
}

TEST_CASE("CanUnload_is_refused_while_only_a_child_of_a_released_record_lives") {
    const Library library;
    ComPtr<IJobContents> contents;
    REQUIRE_HR(CreatePrintJob()->get_JobContents(contents.Put()), S_OK);
    CHECK_HR(library.CanUnloadNow(), S_FALSE);
    contents = {};
    CHECK_HR(library.CanUnloadNow(), S_OK);
}

TEST_CASE("CanUnload_is_refused_while_a_class_object_is_held") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        auto factory = ClassObject(library, each);
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        auto again = ClassObject(library, each);
        factory = {};
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        again = {};
        CHECK_HR(library.CanUnloadNow(), S_OK);
    }
}

TEST_CASE("CanUnload_is_refused_between_lock_and_unlock") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        REQUIRE_HR(ClassObject(library, each)->LockServer(TRUE), S_OK);
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        REQUIRE_HR(ClassObject(library, each)->LockServer(TRUE), S_OK);
        REQUIRE_HR(ClassObject(library, each)->LockServer(FALSE), S_OK);
        CHECK_HR(library.CanUnloadNow(), S_FALSE);
        REQUIRE_HR(ClassObject(library, each)->LockServer(FALSE), S_OK);
        CHECK_HR(library.CanUnloadNow(), S_OK);
    }
}

TEST_CASE("CanUnload_is_granted_after_a_refused_creation") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        ComPtr<IUnknown> object;
        CHECK_HR(ClassObject(library, each)->CreateInstance(nullptr, IID_IMarshal, object.PutVoid()),
                 E_NOINTERFACE);
        CHECK_HR(library.CanUnloadNow(), S_OK);
    }
}

TEST_CASE("CanUnload_lets_COM_unload_the_library_when_nothing_is_alive") {
    {
        const auto alive = CreatePrintJob();
        CoFreeUnusedLibrariesEx(0, 0);
        CHECK(GetModuleHandleW(L"Tarnwick.dll") != nullptr);
        CHECK_TEXT(Text(alive, &IPrintJob::get_Version), L"7.26");
    }
    CoFreeUnusedLibrariesEx(0, 0);
    CHECK(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
    CHECK_TEXT(Text(CreatePrintJob(), &IPrintJob::get_Version), L"7.26");
}
