#include "Machine.h"

#include "tests/support/Wine.h"
#include "tools/Registry.h"
#include "tools/Utf8.h"

namespace {

constexpr wchar_t WindowsKey[] = L"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";

template<class Function>
Function SystemFunction(const wchar_t* module, const char* name) {
    return reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(module), name)));
}

/// The true version, which GetVersionEx hides from programs without a manifest.
RTL_OSVERSIONINFOW Version() {
    RTL_OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof(version);
    SystemFunction<LONG(WINAPI*)(RTL_OSVERSIONINFOW*)>(L"ntdll.dll", "RtlGetVersion")(&version);
    return version;
}

std::wstring SystemFolder(const wchar_t* name) {
    wchar_t windows[MAX_PATH];
    GetSystemWindowsDirectoryW(windows, MAX_PATH);
    return std::wstring(windows) + L"\\" + name;
}

/// Names of keys below HKEY_CURRENT_USER\Software that begin so.
std::vector<std::wstring> UserKeys(const std::wstring& beginning) {
    std::vector<std::wstring> names;
    HKEY software = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &software) != ERROR_SUCCESS)
        return names;
    wchar_t name[256];
    for (DWORD index = 0, length = 256;
         RegEnumKeyExW(software, index, name, &length, nullptr, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
         ++index, length = 256)
        if (std::wstring(name).rfind(beginning, 0) == 0)
            names.emplace_back(name);
    RegCloseKey(software);
    return names;
}

} // namespace

std::string SystemName() {
    const RTL_OSVERSIONINFOW version = Version();
    std::string name =
        Utf8(ReadText(HKEY_LOCAL_MACHINE, WindowsKey, L"ProductName", KEY_WOW64_64KEY).value_or(L"Windows"));
    name += ", version " + std::to_string(version.dwMajorVersion) + "." +
            std::to_string(version.dwMinorVersion) + "." + std::to_string(version.dwBuildNumber);
    if (const auto update = ReadNumber(HKEY_LOCAL_MACHINE, WindowsKey, L"UBR"))
        name += "." + std::to_string(*update);
    if (const auto build = ReadText(HKEY_LOCAL_MACHINE, WindowsKey, L"BuildLabEx", KEY_WOW64_64KEY))
        name += " (" + Utf8(*build) + ")";
    name += Is64BitWindows() ? ", 64 bits" : ", 32 bits";
    if (RunsUnderWine())
        name += std::string(", Wine ") +
                SystemFunction<const char*(__cdecl*)()>(L"ntdll.dll", "wine_get_version")();
    return name;
}

bool Is64BitWindows() {
    BOOL redirected = FALSE;
    return IsWow64Process(GetCurrentProcess(), &redirected) && redirected;
}

bool IsAdministrator() {
    SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
    PSID administrators = nullptr;
    BOOL isMember = FALSE;
    if (!AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0,
                                  0, 0, 0, 0, &administrators))
        return false;
    CheckTokenMembership(nullptr, administrators, &isMember);
    FreeSid(administrators);
    return isMember != FALSE;
}

std::vector<Platform> Platforms() {
    if (!Is64BitWindows())
        return {{"x86", 0, SystemFolder(L"System32")}};
    return {{"x86", KEY_WOW64_32KEY, SystemFolder(L"SysWOW64")},
            {"x64", KEY_WOW64_64KEY, SystemFolder(L"Sysnative")}};
}

std::wstring RegisteredLibrary(const Platform& platform) {
    const std::wstring key = L"CLSID\\{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}\\InprocServer32";
    return ReadText(HKEY_CLASSES_ROOT, key, nullptr, platform.view).value_or(L"");
}

bool HasScriptEngine(const Platform& platform, const wchar_t* name) {
    return KeyExists(HKEY_CLASSES_ROOT, name, platform.view);
}

std::vector<std::string> OwnKeys() {
    std::vector<std::string> found;
    for (const Platform& platform : Platforms())
        for (const wchar_t* key :
             {L"SOFTWARE\\Classes\\CLSID\\{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}",
              L"SOFTWARE\\Classes\\TypeLib\\{D47A619E-7CB5-4B98-9A01-93662E11761E}",
              L"SOFTWARE\\Classes\\AppID\\Tarnwick.DLL", L"SOFTWARE\\Classes\\Corvane.PrintJob",
              L"SOFTWARE\\Corvane", L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects\\Log",
              L"SOFTWARE\\Corvane.SavedByLogTests"})
            if (KeyExists(HKEY_LOCAL_MACHINE, key, platform.view))
                found.push_back(std::string(platform.name) + " HKEY_LOCAL_MACHINE\\" + Utf8(key));
    for (const std::wstring& name : UserKeys(L"JobObjects"))
        found.push_back("HKEY_CURRENT_USER\\Software\\" + Utf8(name));
    return found;
}
