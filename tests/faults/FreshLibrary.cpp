#include "FreshLibrary.h"

#include "tests/support/ProcessCounters.h"

FreshLibrary::FreshLibrary() {
    FaultInjector::Watch();
    SwitchTextCacheOff();
    REQUIRE_HR(Load(), S_OK); // COM and the system allocate on first use
    for (const LibraryClass& each : LibraryClasses())
        UseAndFail(each);
    Unload();
}

HRESULT FreshLibrary::Load() {
    static const std::wstring path = LibraryPath();
    const HMODULE module = LoadLibraryW(path.c_str());
    if (!module)
        return HRESULT_FROM_WIN32(GetLastError());
    m_library.emplace();
    FreeLibrary(module);
    return S_OK;
}

void FreshLibrary::Unload() {
    m_library.reset();
    CoFreeUnusedLibrariesEx(0, 0);
    CHECK(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
}

void UseAndFail(const LibraryClass& of) {
    const auto object = Create<IDispatch>(of.classId);
    ComPtr<ITypeInfo> info;
    CHECK_HR(object->GetTypeInfo(0, 0x0409, info.Put()), S_OK);
    VARIANT xml;
    VariantInit(&xml);
    CHECK_HR(InvokeByName(object.Get(), L"Xml", DISPATCH_PROPERTYGET, {}, &xml), S_OK);
    CHECK_HR(InvokeByName(object.Get(), L"Xml", DISPATCH_PROPERTYPUT, {xml}), S_OK);
    VariantClear(&xml);
    const auto contents = CreateJobContents();
    CHECK_HR(Put(contents, &IJobContents::put_Xml, L"<wrong/>"), E_FAIL);
    SetErrorInfo(0, nullptr);
    CHECK_HR(Put(contents, &IJobContents::put_JobPdl, L"PCL"), S_OK);
    CHECK(Value(contents, &IJobContents::get_DBPdl) > 1);
}

std::size_t RunWithoutGrowth(const std::function<std::size_t(FaultMode)>& work) {
    const auto runBoth = [&] { return work(FaultMode::One) + work(FaultMode::AllFrom); };
    if (!RunsEverything())
        return runBoth();
    runBoth();
    const ProcessCounters before = ProcessCounters::Now();
    const std::size_t runs = runBoth();
    const ProcessCounters after = ProcessCounters::Now();
    INFO(Growth(before, after));
    CHECK_NO_GROWTH(before, after, static_cast<int>(runs));
    return runs;
}
