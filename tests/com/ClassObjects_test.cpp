#include "tests/support/ComClient.h"
#include "tests/support/Library.h"

#include <atomic>

// Class objects, from DllGetClassObject and through COM, on one thread and on many.

namespace {

ComPtr<IClassFactory> ClassObject(const Library& library, REFCLSID classId) {
    ComPtr<IClassFactory> factory;
    REQUIRE_HR(library.GetClassObject(classId, IID_IClassFactory, factory.PutVoid()), S_OK);
    REQUIRE(factory);
    return factory;
}

/// Checks the result and that a garbage out-pointer becomes null.
template<class Call>
void CheckRefusal(HRESULT expected, Call&& call) {
    void* object = GarbagePointer();
    CHECK_HR(call(&object), expected);
    CHECK(object == nullptr);
}

/// An outer object that must not be referenced.
class UnusedOuter : public IUnknown {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
        *object = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override { return --references; }

    virtual ~UnusedOuter() = default;
    ULONG references = 1;
};

template<class Body>
struct SharedStart {
    Body body;
    HANDLE go;

    static DWORD WINAPI Run(void* context) {
        auto* const start = static_cast<SharedStart*>(context);
        WaitForSingleObject(start->go, INFINITE);
        start->body();
        return 0;
    }
};

/// Runs the body on several threads at once. The body must not use assertions.
template<class Body>
void RunOnThreads(unsigned count, Body body) {
    SharedStart<Body> start{body, CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    REQUIRE(start.go != nullptr);
    std::vector<HANDLE> threads;
    for (unsigned i = 0; i < count; ++i)
        threads.push_back(CreateThread(nullptr, 0, SharedStart<Body>::Run, &start, 0, nullptr));
    SetEvent(start.go);
    for (HANDLE thread : threads) {
        CHECK(thread != nullptr);
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
    }
    CloseHandle(start.go);
}

} // namespace

TEST_CASE("ClassObjects_requested_twice_are_the_same_object") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto first = ClassObject(library, each.classId);
        const auto second = ClassObject(library, each.classId);
        CHECK(first.Get() == second.Get());
    }
}

TEST_CASE("ClassObjects_released_and_requested_again_are_the_same_object") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        IClassFactory* const address = ClassObject(library, each.classId).Get();
        CHECK(ClassObject(library, each.classId).Get() == address);
    }
}

TEST_CASE("ClassObjects_through_COM_are_those_of_the_entry_point") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        ComPtr<IClassFactory> first, second;
        REQUIRE_HR(
            CoGetClassObject(each.classId, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory, first.PutVoid()),
            S_OK);
        REQUIRE_HR(CoGetClassObject(each.classId, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                                    second.PutVoid()),
                   S_OK);
        CHECK(first.Get() == second.Get());
        CHECK(first.Get() == ClassObject(library, each.classId).Get());
    }
}

TEST_CASE("ClassObjects_of_the_ten_classes_are_ten_objects") {
    const Library library;
    std::vector<ComPtr<IClassFactory>> factories;
    for (const LibraryClass& each : LibraryClasses()) {
        auto factory = ClassObject(library, each.classId);
        for (const auto& other : factories)
            CHECK(factory.Get() != other.Get());
        factories.push_back(std::move(factory));
    }
    CHECK(factories.size() == 10);
}

TEST_CASE("ClassObjects_of_an_unknown_class_are_refused") {
    const Library library;
    CLSID lastByteDiffers = LibraryClassNamed("PrintJob").classId;
    lastByteDiffers.Data4[7] ^= 1;
    CLSID firstByteDiffers = LibraryClassNamed("PrintJob").classId;
    firstByteDiffers.Data1 ^= 0x80000000;
    for (const CLSID& unknown :
         {CLSID{}, lastByteDiffers, firstByteDiffers, LibraryClassNamed("PrintJob").interfaceId})
        CheckRefusal(CLASS_E_CLASSNOTAVAILABLE, [&](void** object) {
            return library.GetClassObject(unknown, IID_IClassFactory, object);
        });
}

TEST_CASE("ClassObjects_with_a_null_out_pointer_are_refused") {
    const Library library;
    CHECK_HR(library.GetClassObject(CLSID{}, IID_IClassFactory, nullptr), E_POINTER);
    for (const LibraryClass& each : LibraryClasses())
        CHECK_HR(library.GetClassObject(each.classId, IID_IClassFactory, nullptr), E_POINTER);
}

TEST_CASE("ClassObjects_have_no_other_interfaces") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto factory = ClassObject(library, each.classId);
        for (const IID& unknown : {IID_IDispatch, IID_ISupportErrorInfo, IID_IMarshal, each.interfaceId}) {
            CheckRefusal(E_NOINTERFACE, [&](void** object) {
                return library.GetClassObject(each.classId, unknown, object);
            });
            CheckRefusal(E_NOINTERFACE,
                         [&](void** object) { return factory->QueryInterface(unknown, object); });
        }
        CHECK_HR(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
        ComPtr<IUnknown> identity, again;
        CHECK_HR(factory->QueryInterface(IID_IUnknown, identity.PutVoid()), S_OK);
        CHECK_HR(library.GetClassObject(each.classId, IID_IUnknown, again.PutVoid()), S_OK);
        CHECK(identity.Get() == again.Get());
    }
}

TEST_CASE("ClassObjects_create_a_new_instance_of_their_class_each_time") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto factory = ClassObject(library, each.classId);
        ComPtr<IUnknown> first, second;
        REQUIRE_HR(factory->CreateInstance(nullptr, IID_IUnknown, first.PutVoid()), S_OK);
        REQUIRE_HR(factory->CreateInstance(nullptr, IID_IUnknown, second.PutVoid()), S_OK);
        CHECK(first.Get() != second.Get());
        for (const LibraryClass& other : LibraryClasses()) {
            ComPtr<IUnknown> queried;
            const bool own = other.name == each.name;
            CHECK_HR(first->QueryInterface(other.interfaceId, queried.PutVoid()), own ? S_OK : E_NOINTERFACE);
        }
    }
}

TEST_CASE("ClassObjects_create_no_instance_with_a_null_out_pointer") {
    const Library library;
    UnusedOuter outer;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto factory = ClassObject(library, each.classId);
        CHECK_HR(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
        CHECK_HR(factory->CreateInstance(&outer, IID_IUnknown, nullptr), E_POINTER);
    }
    CHECK(outer.references == 1);
}

TEST_CASE("ClassObjects_create_no_instance_for_an_interface_it_lacks") {
    const Library library;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        const auto factory = ClassObject(library, each.classId);
        for (const IID& unknown : {IID_IClassFactory, IID_IMarshal, IID_IPersist, IID{}})
            CheckRefusal(E_NOINTERFACE,
                         [&](void** object) { return factory->CreateInstance(nullptr, unknown, object); });
    }
}

TEST_CASE("ClassObjects_refuse_an_outer_object_except_for_the_logical_printer") {
    const Library library;
    UnusedOuter outer;
    int refusing = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        if (each.aggregatable)
            continue;
        INFO(each.name);
        const auto factory = ClassObject(library, each.classId);
        for (const IID& asked : {IID_IUnknown, each.interfaceId})
            CheckRefusal(CLASS_E_NOAGGREGATION,
                         [&](void** object) { return factory->CreateInstance(&outer, asked, object); });
        CheckRefusal(CLASS_E_NOAGGREGATION, [&](void** object) {
            return CoCreateInstance(each.classId, &outer, CLSCTX_INPROC_SERVER, IID_IUnknown, object);
        });
        ++refusing;
    }
    CHECK(refusing == 9);
    CHECK(outer.references == 1);
}

TEST_CASE("ClassObjects_counted_by_many_threads_lose_no_reference") {
    const Library library;
    const auto factory = ClassObject(library, LibraryClassNamed("CopyLine").classId);
    factory->AddRef();
    const ULONG before = factory->Release();
    std::atomic<int> lockErrors{0};
    RunOnThreads(8, [&] {
        for (int i = 0; i < 20000; ++i) {
            factory->AddRef();
            if (factory->LockServer(TRUE) != S_OK || factory->LockServer(FALSE) != S_OK)
                ++lockErrors;
            factory->Release();
        }
    });
    factory->AddRef();
    CHECK(factory->Release() == before);
    CHECK(lockErrors == 0);
}

TEST_CASE("ClassObjects_held_and_released_by_many_threads_leave_the_library_free") {
    const Library library;
    RunOnThreads(8, [&] {
        for (int i = 0; i < 5000; ++i) {
            void* object = nullptr;
            if (library.GetClassObject(LibraryClassNamed("FaxJob").classId, IID_IUnknown, &object) == S_OK)
                static_cast<IUnknown*>(object)->Release();
        }
    });
    CHECK_HR(library.CanUnloadNow(), S_OK);
}

TEST_CASE("ClassObjects_first_requested_by_many_threads_are_one_object") {
    constexpr unsigned threads = 16;
    const auto& classes = LibraryClasses();
    for (int round = 0; round < 20; ++round) {
        CoFreeUnusedLibrariesEx(0, 0);
        REQUIRE(GetModuleHandleW(L"Tarnwick.dll") == nullptr); // no class object exists yet
        const Library library;
        for (const LibraryClass& each : classes) {
            std::atomic<unsigned> next{0};
            void* objects[threads] = {};
            RunOnThreads(threads, [&] {
                void** const object = &objects[next++];
                library.GetClassObject(each.classId, IID_IClassFactory, object);
            });
            INFO(each.name << ", round " << round);
            REQUIRE(objects[0] != nullptr);
            for (void* object : objects)
                CHECK(object == objects[0]);
            for (void* object : objects)
                static_cast<IUnknown*>(object)->Release();
        }
        CHECK_HR(library.CanUnloadNow(), S_OK);
    }
}
