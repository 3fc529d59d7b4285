#include "Registration.h"

#include "ClassMap.h"
#include "JobObjects.h"
#include "JobObjects/frame/ModulePath.h"
#include "JobObjects/frame/TypeLibrary.h"
#include "common/QxRegistryHdl.h"
#include "common/com/ErrorReporting.h"
#include "common/text/Format.h"

#include <algorithm>
#include <string>

namespace {

constexpr const wchar_t* AppIdText = L"{184E2C3E-38AA-4CAB-8FF8-B99261F8A0B2}";
constexpr const wchar_t* AppIdKey = L"AppID\\{184E2C3E-38AA-4CAB-8FF8-B99261F8A0B2}";
constexpr const wchar_t* ModuleAppIdKey = L"AppID\\Tarnwick.DLL";

// The other view of the registry on 64-bit Windows, in which a library of the other bitness is registered.
// Only CLSID and Interface differ between the views; ProgIDs, AppIDs and type libraries are shared.
#ifdef _WIN64
constexpr REGSAM OtherView = KEY_WOW64_32KEY;
constexpr const wchar_t* TypeLibraryPlatform = L"win64";
bool HasOtherView() noexcept {
    return true;
}
#else
constexpr REGSAM OtherView = KEY_WOW64_64KEY;
constexpr const wchar_t* TypeLibraryPlatform = L"win32";
bool HasOtherView() noexcept {
    BOOL on64BitWindows = FALSE;
    return IsWow64Process(GetCurrentProcess(), &on64BitWindows) && on64BitWindows;
}
#endif

/// Sets the thread's locale to the system's during registration.
class SystemLocale {
public:
    SystemLocale() noexcept : m_previous(GetThreadLocale()) { SetThreadLocale(LOCALE_SYSTEM_DEFAULT); }
    SystemLocale(const SystemLocale&) = delete;
    SystemLocale& operator=(const SystemLocale&) = delete;
    ~SystemLocale() { SetThreadLocale(m_previous); }

private:
    LCID m_previous;
};

/// Creates a key below HKEY_CLASSES_ROOT and sets one of its values; a null value only creates the key.
void SetValue(const std::wstring& key, const wchar_t* name, const wchar_t* value) {
    QxRegistryHdl handle;
    if (!handle.Create(HKEY_CLASSES_ROOT, key.c_str()) || (value && !handle.WriteString(name, value)))
        throw ComError(HRESULT_FROM_WIN32(handle.LastError()));
}

void SetDefault(const std::wstring& key, const std::wstring& value) {
    SetValue(key, nullptr, value.c_str());
}

void RemoveTree(const std::wstring& key) {
    const LSTATUS status = RegDeleteTreeW(HKEY_CLASSES_ROOT, key.c_str());
    if (status != ERROR_FILE_NOT_FOUND)
        ThrowIfFailed(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

std::wstring GuidText(const GUID& guid) {
    wchar_t text[39];
    StringFromGUID2(guid, text, static_cast<int>(std::size(text)));
    return text;
}

void RegisterAppId() {
    SetDefault(AppIdKey, L"JobObjects");
    SetValue(AppIdKey, L"DllSurrogate", L""); // empty: the system's default surrogate
    SetValue(ModuleAppIdKey, L"AppID", AppIdText);
}

void UnregisterAppId() {
    RemoveTree(AppIdKey);
    RemoveTree(ModuleAppIdKey);
}

/// The registry keys of one class.
struct ClassKeys {
    explicit ClassKeys(const ClassMapEntry& entry)
        : progId(std::wstring(L"Corvane.") + entry.name),
          versionedProgId(progId + L".1"),
          classIdText(GuidText(*entry.classId)),
          classId(L"CLSID\\" + classIdText) {}

    std::wstring progId;
    std::wstring versionedProgId;
    std::wstring classIdText;
    std::wstring classId;
};

void RegisterClassEntry(const ClassMapEntry& entry, const std::wstring& modulePath) {
    const ClassKeys keys(entry);
    const std::wstring description = std::wstring(entry.name) + L" Class";
    SetDefault(keys.versionedProgId, description);
    SetDefault(keys.versionedProgId + L"\\CLSID", keys.classIdText);
    SetDefault(keys.progId, description);
    SetDefault(keys.progId + L"\\CLSID", keys.classIdText);
    SetDefault(keys.progId + L"\\CurVer", keys.versionedProgId);

    RemoveTree(keys.classId); // drops leftovers of an earlier registration
    SetDefault(keys.classId, description);
    SetDefault(keys.classId + L"\\ProgID", keys.versionedProgId);
    SetDefault(keys.classId + L"\\VersionIndependentProgID", keys.progId);
    SetValue(keys.classId + L"\\Programmable", nullptr, nullptr);
    SetDefault(keys.classId + L"\\InprocServer32", modulePath);
    SetValue(keys.classId + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
    SetValue(keys.classId, L"AppID", AppIdText);
    SetDefault(keys.classId + L"\\TypeLib", GuidText(LIBID_JobObjectsLib));
}

/// Whether a library of the other bitness needs the shared keys.
bool OtherLibraryIsRegistered() {
    return HasOtherView() &&
           std::any_of(std::begin(ClassMap), std::end(ClassMap), [](const ClassMapEntry& entry) {
               return QxRegistryHdl().Open(HKEY_CLASSES_ROOT, ClassKeys(entry).classId.c_str(),
                                           KEY_READ | OtherView);
           });
}

void RemoveProgIds(const ClassMapEntry& entry) {
    const ClassKeys keys(entry);
    RemoveTree(keys.versionedProgId);
    RemoveTree(keys.progId);
}

void RegisterOwnTypeLibrary() {
    UniqueBstr path;
    ComPtr<ITypeLib> library;
    ThrowIfFailed(LoadOwnTypeLibrary(1, path, library));
    ThrowIfFailed(RegisterTypeLib(library.Get(), path.Get(), nullptr));
}

TLIBATTR OwnTypeLibraryAttributes() {
    UniqueBstr path;
    ComPtr<ITypeLib> library;
    ThrowIfFailed(LoadOwnTypeLibrary(1, path, library));
    TLIBATTR* attributes = nullptr;
    ThrowIfFailed(library->GetLibAttr(&attributes));
    const TLIBATTR own = *attributes;
    library->ReleaseTLibAttr(attributes);
    return own;
}

void UnregisterOwnTypeLibrary() {
    const TLIBATTR own = OwnTypeLibraryAttributes();
    UniqueBstr registered;
    const HRESULT found =
        QueryPathOfRegTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, registered.Put());
    if (found == TYPE_E_LIBNOTREGISTERED)
        return; // nothing to remove
    ThrowIfFailed(found);
    ThrowIfFailed(UnRegisterTypeLib(own.guid, own.wMajorVerNum, own.wMinorVerNum, own.lcid, own.syskind));
}

/// Keeps what the other library needs: UnRegisterTypeLib removes the interfaces from both views.
void RemoveOwnTypeLibraryPath() {
    const TLIBATTR own = OwnTypeLibraryAttributes();
    RemoveTree(FormatText(L"TypeLib\\%ls\\%x.%x\\%lx\\%ls", GuidText(own.guid).c_str(), own.wMajorVerNum,
                          own.wMinorVerNum, own.lcid, TypeLibraryPlatform));
}

} // namespace

HRESULT RegisterLibrary() noexcept {
    return RunMethod(L"DllRegisterServer", [] {
        const SystemLocale locale;
        const std::wstring modulePath = OwnModulePath();
        RegisterAppId();
        for (const ClassMapEntry& entry : ClassMap)
            RegisterClassEntry(entry, modulePath);
        RegisterOwnTypeLibrary();
    });
}

HRESULT UnregisterLibrary() noexcept {
    return RunMethod(L"DllUnregisterServer", [] {
        const SystemLocale locale;
        for (const ClassMapEntry& entry : ClassMap)
            RemoveTree(ClassKeys(entry).classId);
        if (OtherLibraryIsRegistered()) {
            RemoveOwnTypeLibraryPath();
            return;
        }
        for (const ClassMapEntry& entry : ClassMap)
            RemoveProgIds(entry);
        UnregisterOwnTypeLibrary();
        UnregisterAppId();
    });
}
