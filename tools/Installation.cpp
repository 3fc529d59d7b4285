#include "Installation.h"

#include "Registry.h"

#include <initguid.h> // makes the header define the CLSIDs
#include "JobObjectClasses.h"
#include "JobObjects.h"

namespace {

/// The system's limit.
constexpr DWORD LongestPath = 32768;

ClassRegistration RegistrationOf(const wchar_t* name, const CLSID& classId, Bitness bitness) {
    wchar_t id[40];
    StringFromGUID2(classId, id, 40);
    const std::wstring server = std::wstring(L"CLSID\\") + id + L"\\InprocServer32";
    const REGSAM view = RegistryView(bitness);
    return {name, KeyExists(HKEY_CLASSES_ROOT, std::wstring(L"Corvane.") + name + L"\\CLSID"),
            ReadText(HKEY_CLASSES_ROOT, server, nullptr, view).value_or(L""),
            ReadText(HKEY_CLASSES_ROOT, server, L"ThreadingModel", view).value_or(L"")};
}

std::wstring PathOf(HMODULE module) {
    std::wstring path(LongestPath, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), LongestPath));
    return path;
}

} // namespace

std::vector<ClassRegistration> RegisteredClasses(Bitness bitness) {
    std::vector<ClassRegistration> classes;
#define ADD_CLASS(name, Interface) classes.push_back(RegistrationOf(L## #name, CLSID_##name, bitness));
    JOBOBJECTS_CLASSES(ADD_CLASS)
#undef ADD_CLASS
    return classes;
}

std::wstring RegisteredModule(Bitness bitness) {
    for (const ClassRegistration& each : RegisteredClasses(bitness))
        if (!each.file.empty())
            return each.file;
    return {};
}

std::wstring FolderOf(const std::wstring& file) {
    return file.substr(0, file.find_last_of(L"\\/") + 1);
}

std::wstring FullPath(const std::wstring& path) {
    std::wstring full(LongestPath, L'\0');
    full.resize(GetFullPathNameW(path.c_str(), LongestPath, full.data(), nullptr));
    return full;
}

std::wstring CatalogueBeside(const std::wstring& module) {
    return FolderOf(module) + L"JobAttributes.xml";
}

std::wstring ToolPath() {
    return PathOf(nullptr);
}

std::wstring LoadedLibrary() {
    const HMODULE module = GetModuleHandleW(L"Tarnwick.dll");
    return module ? PathOf(module) : L"";
}

bool FileExists(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && !(attributes & FILE_ATTRIBUTE_DIRECTORY);
}
