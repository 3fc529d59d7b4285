#include "FreshLibrary.h"

#include "tests/support/Members.h"

// Work that the library does once per load: loading, the first class object and object of a class, the first
// failure, the first late-bound call, the first catalogue lookup. Each run therefore reloads the library.

TEST_CASE("Faults_while_the_library_is_loaded_are_survived") {
    FreshLibrary library;
    const auto check = [](const FaultRun& run) {
        CHECK_HR(run.result, S_OK);
        UseAndFail(LibraryClassNamed("PrintJob"));
    };
    const std::size_t runs = RunWithoutGrowth([&](FaultMode mode) {
        return FailEachCall(mode,
                            {{}, [&] { return library.Load(); }, check, [&] { library.Unload(); }, false});
    });
    PrintInjected("loading", runs);
}

TEST_CASE("Faults_in_the_first_object_of_every_class_are_survived") {
    FreshLibrary library;
    std::size_t runs = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        ComPtr<IUnknown> object;
        const auto prepare = [&] {
            library.Load();
            // Creates the jobs' child first: if its class object failed, COM would try other servers.
            if (each.name != "JobContents")
                CreateJobContents();
        };
        const auto create = [&]() -> HRESULT {
            ComPtr<IClassFactory> factory;
            const HRESULT result =
                library->GetClassObject(each.classId, IID_IClassFactory, factory.PutVoid());
            return FAILED(result) ? result
                                  : factory->CreateInstance(nullptr, each.interfaceId, object.PutVoid());
        };
        const auto check = [&](const FaultRun& run) {
            CheckResult(run, S_OK);
            CHECK((object.Get() != nullptr) == SUCCEEDED(run.result));
            object = {};
            CHECK_HR(create(), S_OK);
            object = {};
            UseAndFail(each);
        };
        runs += RunWithoutGrowth([&](FaultMode mode) {
            return FailEachCall(mode, {prepare, create, check, [&] { library.Unload(); }, false});
        });
    }
    PrintInjected("first object of every class", runs);
}

TEST_CASE("Faults_in_the_first_failing_call_are_survived") {
    FreshLibrary library;
    ComPtr<IPrintJob> job;
    const UniqueBstr wrong(L"<PrintJob Version=\"x\"/>");
    const auto prepare = [&] {
        library.Load();
        job = CreatePrintJob();
    };
    const auto fail = [&] { return job->put_Xml(wrong.Get()); };
    const auto check = [&](const FaultRun& run) {
        CheckResult(run, E_FAIL);
        CHECK_HR(fail(), E_FAIL);
    };
    const auto cleanUp = [&] {
        job = {};
        library.Unload();
    };
    const std::size_t runs =
        RunWithoutGrowth([&](FaultMode mode) { return FailEachCall(mode, {prepare, fail, check, cleanUp}); });
    PrintInjected("first failing call", runs);
}

TEST_CASE("Faults_in_the_first_late_bound_call_are_survived") {
    FreshLibrary library;
    std::size_t runs = 0;
    for (const LibraryClass& each : LibraryClasses()) {
        INFO(each.name);
        ComPtr<IDispatch> object;
        const auto prepare = [&] {
            library.Load();
            object = Create<IDispatch>(each.classId);
        };
        const auto call = [&]() -> HRESULT {
            auto* name = const_cast<LPOLESTR>(L"Xml");
            DISPID id = DISPID_UNKNOWN;
            const HRESULT result = object->GetIDsOfNames(IID_NULL, &name, 1, 0x0409, &id);
            if (FAILED(result))
                return result;
            const InvokeResult invoked = Invoke(object.Get(), id, DISPATCH_PROPERTYGET);
            const VARIANT& value = invoked.value.value;
            CHECK((value.vt == VT_BSTR && SysStringLen(value.bstrVal) > 0) == SUCCEEDED(invoked.result));
            return invoked.result == DISP_E_EXCEPTION ? invoked.exceptionCode : invoked.result;
        };
        const auto check = [&](const FaultRun& run) {
            // Without memory for its name table, the library asks the type information.
            if (run.name != "malloc" || run.result != S_OK)
                CheckResult(run, S_OK);
            CHECK_HR(call(), S_OK);
        };
        const auto cleanUp = [&] {
            object = {};
            library.Unload();
        };
        runs += RunWithoutGrowth([&](FaultMode mode) {
            return FailEachCall(mode, {prepare, call, check, cleanUp, false}, RunsEverything() ? 1 : 23);
        });
    }
    PrintInjected("first late-bound call", runs);
}

TEST_CASE("Faults_in_the_first_catalogue_lookup_are_survived") {
    FreshLibrary library;
    ComPtr<IJobContents> contents;
    LONG code = 0;
    const auto prepare = [&] {
        library.Load();
        contents = CreateJobContents();
        CHECK_HR(Put(contents, &IJobContents::put_JobPdl, L"PCL"), S_OK);
        code = -1;
    };
    const auto lookUp = [&] { return contents->get_DBPdl(&code); };
    const auto check = [&](const FaultRun& run) {
        if (run.name != "GetModuleFileNameW" || run.result != S_OK) // like an unreadable file
            CheckResult(run, S_OK);
        if (FAILED(run.result))
            CHECK(code == 0);
        CHECK(Value(contents, &IJobContents::get_DBPdl) > 1);
    };
    const auto cleanUp = [&] {
        contents = {};
        library.Unload();
    };
    const std::size_t runs = RunWithoutGrowth([&](FaultMode mode) {
        return FailEachCall(mode, {prepare, lookUp, check, cleanUp}, RunsEverything() ? 1 : 61);
    });
    PrintInjected("first catalogue lookup", runs);
}
