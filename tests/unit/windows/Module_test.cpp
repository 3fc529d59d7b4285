#include "JobObjects/CJobObjectsModule.h"
#include "JobObjects/frame/ModulePath.h"
#include "JobObjects/frame/TypeLibrary.h"
#include "tests/support/ImportPatch.h"

#include "JobObjects.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <string>

// The module object, linked into the test: members that only the library's own code uses.

namespace {

CJobObjectsModule& InitializedModule() {
    TheModule().Initialize(GetModuleHandleW(nullptr));
    return TheModule();
}

constexpr unsigned MissingResource = 7;

/// The file that holds the type library if the module (here the test program) lacks the resource.
std::wstring FileBesideTheModule() {
    InitializedModule();
    const std::wstring path = OwnModulePath();
    return path.substr(0, path.rfind(L'.')) + L".tlb";
}

/// The path that the replaced GetModuleFileName returns; it fails if this is empty.
std::wstring reportedPath;

DWORD WINAPI ReportPath(HMODULE, wchar_t* buffer, DWORD size) {
    if (reportedPath.empty() || reportedPath.size() >= size) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    std::copy_n(reportedPath.c_str(), reportedPath.size() + 1, buffer);
    return static_cast<DWORD>(reportedPath.size());
}

HRESULT LoadTypeLibraryFrom(const std::wstring& path, unsigned index) {
    InitializedModule();
    const ImportPatch patch(GetModuleHandleW(nullptr), "GetModuleFileNameW",
                            reinterpret_cast<void*>(ReportPath));
    reportedPath = path;
    UniqueBstr loadedFrom;
    ComPtr<ITypeLib> library;
    return LoadOwnTypeLibrary(index, loadedFrom, library);
}

int callbackRuns = 0;

void CountRun(void* context) noexcept {
    callbackRuns += *static_cast<int*>(context);
}

} // namespace

TEST_CASE("Module_before_initialisation_returns_no_class_object") {
    void* object = &callbackRuns;
    CHECK(TheModule().GetClassObject(CLSID_PrintJob, IID_IUnknown, &object) == E_UNEXPECTED);
    CHECK(object == nullptr);
    CHECK(TheModule().GetClassObject(CLSID_PrintJob, IID_IUnknown, nullptr) == E_POINTER);
}

TEST_CASE("Module_lock_and_unlock_return_the_new_count") {
    CJobObjectsModule& module = InitializedModule();
    CHECK(module.Lock() == 1);
    CHECK(module.Lock() == 2);
    CHECK(module.Unlock() == 1);
    CHECK(module.Unlock() == 0);
    CHECK(module.LockCount() == 0);
}

TEST_CASE("Module_global_interface_table_is_created_once_and_returned_with_a_reference") {
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

TEST_CASE("Module_type_library_is_loaded_from_the_file_beside_the_module_without_the_resource") {
    const std::wstring file = FileBesideTheModule();
    {
        ComPtr<ICreateTypeLib2> creator;
        REQUIRE(CreateTypeLib2(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, file.c_str(), creator.Put()) ==
                S_OK);
        REQUIRE(creator->SetGuid(LIBID_JobObjectsLib) == S_OK);
        REQUIRE(creator->SaveAllChanges() == S_OK);
    }
    UniqueBstr path;
    ComPtr<ITypeLib> library;
    CHECK(LoadOwnTypeLibrary(MissingResource, path, library) == S_OK);
    CHECK(path.View() == file);
    CHECK(library);
    library = {}; // closes the file
    CHECK(DeleteFileW(file.c_str()));
}

TEST_CASE("Module_type_library_without_resource_and_file_fails_with_the_result_of_loading_the_file") {
    const std::wstring file = FileBesideTheModule();
    ComPtr<ITypeLib> library;
    const HRESULT expected = LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.Put());
    REQUIRE(FAILED(expected));
    UniqueBstr path;
    CHECK(LoadOwnTypeLibrary(MissingResource, path, library) == expected);
    CHECK(path.Get() == nullptr);
    CHECK_FALSE(library);
}

TEST_CASE("Module_type_library_path_with_its_index_has_less_than_270_characters") {
    const std::wstring longest = L"C:\\" + std::wstring(256, L'd'); // 259 characters, the longest module path
    CHECK(LoadTypeLibraryFrom(longest, 1000000000) == E_FAIL);
    const HRESULT shorter = LoadTypeLibraryFrom(longest, 100000000);
    CHECK(FAILED(shorter));
    CHECK(shorter != E_FAIL); // tried to load the file, which does not exist
}

TEST_CASE("Module_type_library_of_a_module_without_a_path_fails_with_the_system_error") {
    CHECK(LoadTypeLibraryFrom(L"", 0) == HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
}
