#include "JobObjects/CJobObjectsModule.h"
#include "JobObjects/frame/ModulePath.h"
#include "JobObjects/frame/TypeLibrary.h"
#include "tests/support/ImportPatch.h"

#include "JobObjects.h"

#include <catch2/catch.hpp>

#include <algorithm>
#include <string>

// The module object by itself, linked into the test: what it does for the library's own code.

namespace {

CJobObjectsModule& InitializedModule() {
    TheModule().Initialize(GetModuleHandleW(nullptr));
    return TheModule();
}

constexpr unsigned missingResource = 7;

/// Where the type library is looked for when the module, here the test program, lacks the resource.
std::wstring FileBesideTheModule() {
    InitializedModule();
    const std::wstring path = OwnModulePath();
    return path.substr(0, path.rfind(L'.')) + L".tlb";
}

/// The module's path as the system tells it; if it is empty, the system fails.
std::wstring toldPath;

DWORD WINAPI TellPath(HMODULE, wchar_t* buffer, DWORD size) {
    if (toldPath.empty() || toldPath.size() >= size) {
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    std::copy_n(toldPath.c_str(), toldPath.size() + 1, buffer);
    return static_cast<DWORD>(toldPath.size());
}

HRESULT LoadTypeLibraryFrom(const std::wstring& path, unsigned index) {
    InitializedModule();
    const ImportPatch patch(GetModuleHandleW(nullptr), "GetModuleFileNameW",
                            reinterpret_cast<void*>(TellPath));
    toldPath = path;
    UniqueBstr loadedFrom;
    ComPtr<ITypeLib> library;
    return LoadOwnTypeLibrary(index, loadedFrom, library);
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

TEST_CASE("Module_type_library_is_loaded_from_the_file_beside_the_module_without_the_resource") {
    const std::wstring file = FileBesideTheModule();
    {
        ComPtr<ICreateTypeLib2> creator;
        REQUIRE(CreateTypeLib2(SYS_WIN32, file.c_str(), creator.Put()) == S_OK);
        REQUIRE(creator->SetGuid(LIBID_JobObjectsLib) == S_OK);
        REQUIRE(creator->SaveAllChanges() == S_OK);
    }
    UniqueBstr path;
    ComPtr<ITypeLib> library;
    CHECK(LoadOwnTypeLibrary(missingResource, path, library) == S_OK);
    CHECK(path.View() == file);
    CHECK(library);
    library = {}; // lets the file go
    CHECK(DeleteFileW(file.c_str()));
}

TEST_CASE("Module_type_library_that_is_nowhere_fails_with_the_result_of_the_second_attempt") {
    const std::wstring file = FileBesideTheModule();
    ComPtr<ITypeLib> library;
    const HRESULT expected = LoadTypeLibEx(file.c_str(), REGKIND_NONE, library.Put());
    REQUIRE(FAILED(expected));
    UniqueBstr path;
    CHECK(LoadOwnTypeLibrary(missingResource, path, library) == expected);
    CHECK(path.Get() == nullptr);
    CHECK_FALSE(library);
}

TEST_CASE("Module_type_library_path_with_its_index_has_less_than_270_characters") {
    const std::wstring longest = L"C:\\" + std::wstring(256, L'd'); // 259, the most that the system tells
    CHECK(LoadTypeLibraryFrom(longest, 1000000000) == E_FAIL);
    const HRESULT shorter = LoadTypeLibraryFrom(longest, 100000000);
    CHECK(FAILED(shorter));
    CHECK(shorter != E_FAIL); // looked for, and not there
}

TEST_CASE("Module_type_library_of_a_module_without_a_path_fails_with_the_system_error") {
    CHECK(LoadTypeLibraryFrom(L"", 0) == HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND));
}
