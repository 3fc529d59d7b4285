#include "tests/support/Library.h"

#include "tests/support/ComClient.h"
#include "tests/support/ProgramFolder.h"
#include "tests/support/TypeLibrary_expected.h"

#include <stdexcept>

namespace {

GUID GuidFrom(const std::string& text) {
    GUID guid;
    REQUIRE_HR(CLSIDFromString(std::wstring(text.begin(), text.end()).c_str(), &guid), S_OK);
    return guid;
}

std::vector<LibraryClass> MakeLibraryClasses() {
    std::vector<LibraryClass> classes;
    for (const ExpectedClass& each : expectedClasses())
        classes.push_back({each.name, GuidFrom(each.clsid),
                           GuidFrom(expectedInterface(each.defaultInterface).iid),
                           each.name == "LogicalPrinter"});
    return classes;
}

} // namespace

std::wstring LibraryPath() {
    const std::filesystem::path beside = BesideProgram("Tarnwick.dll");
    if (std::filesystem::exists(beside))
        return beside.wstring();
    wchar_t path[MAX_PATH];
    DWORD size = sizeof(path);
    REQUIRE(RegGetValueW(HKEY_CLASSES_ROOT, L"CLSID\\{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}\\InprocServer32",
                         nullptr, RRF_RT_REG_SZ, nullptr, path, &size) == ERROR_SUCCESS);
    return path;
}

Library::Library() : m_module(LoadLibraryW(LibraryPath().c_str())) {
    REQUIRE(m_module != nullptr);
    Find("DllGetClassObject", m_getClassObject);
    Find("DllCanUnloadNow", m_canUnloadNow);
    Find("DllRegisterServer", m_registerServer);
    Find("DllUnregisterServer", m_unregisterServer);
}

Library::~Library() {
    FreeLibrary(m_module);
}

template<class Function>
void Library::Find(const char* name, Function& function) const {
    INFO(name);
    const FARPROC address = GetProcAddress(m_module, name);
    REQUIRE(address != nullptr);
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

const std::vector<LibraryClass>& LibraryClasses() {
    static const std::vector<LibraryClass> classes = MakeLibraryClasses();
    return classes;
}

const LibraryClass& LibraryClassNamed(const std::string& name) {
    for (const LibraryClass& each : LibraryClasses())
        if (each.name == name)
            return each;
    throw std::out_of_range("no class " + name);
}
