// check: diagnoses the library as clients see it. Of problems with one cause, only the cause is reported.

#include "ActivationContext.h"
#include "Catalogue.h"
#include "CheckLog.h"
#include "CheckReport.h"
#include "Commands.h"
#include "Console.h"
#include "Escaping.h"
#include "Installation.h"
#include "RecordObject.h"
#include "SystemError.h"

#include "common/QxVersion.h"
#include "common/com/Bstr.h"

#include <initguid.h> // makes the header define the LIBID
#include "JobObjects.h"

#include <algorithm>
#include <array>

namespace {

constexpr LCID LibraryLocale = 0x0409;
constexpr wchar_t AssemblyManifest[] = L"JobObjects.manifest";

std::wstring AllClasses(std::size_t count) {
    return std::to_wstring(count) + L" of " + std::to_wstring(ClassNames.size()) + L" classes";
}

/// Each bitness has its own regsvr32. On 64-bit Windows, the 32-bit one is not on the path.
std::wstring Regsvr32() {
    std::array<wchar_t, MAX_PATH> folder{};
    const bool isOther = OwnBitness == Bitness::Bits32 && SystemHasBoth() &&
                         GetSystemWow64DirectoryW(folder.data(), static_cast<UINT>(folder.size())) > 0;
    return (isOther ? std::wstring(folder.data()) + L"\\" : L"") + L"regsvr32.exe";
}

/// A command that registers a library.
std::wstring Register(const std::wstring& module) {
    return L"run as administrator: " + Regsvr32() + L" \"" + module + L"\"";
}

std::wstring RegisterAgain(const std::wstring& module) {
    return L"repair the installation, or " + Register(module);
}

class Checkup {
public:
    explicit Checkup(Format format) : m_report(format) {}
    ExitCode Run(const Options& options);

private:
    bool SelectProgram(const std::wstring& program);
    bool SelectLibrary();
    bool SelectRegistered();
    bool NotRegistered();
    void ShowRegistration(Bitness bitness, const std::vector<ClassRegistration>& classes);
    bool CheckFile(const std::wstring& module);
    bool CheckRegistration(const std::vector<ClassRegistration>& classes);
    bool CheckObjects();
    void CheckVersion(const std::wstring& module);
    void CheckTypeLibrary(const std::wstring& module);
    void CheckCatalogue(const std::wstring& module);
    bool Cause(const std::wstring& problem, const std::wstring& remedy) {
        m_report.Problem(problem, remedy);
        return false;
    }

    CheckReport m_report;
    ActivationContext m_context;
    bool m_isRegistered = false; ///< found in the registry, not through a manifest
};

ExitCode Checkup::Run(const Options& options) {
    m_report.Item(L"Tool", std::wstring(PROJECT_VERSION) + L", " + Name(OwnBitness));
    if ((options.files.empty() || SelectProgram(FullPath(options.files[0]))) && SelectLibrary() &&
        CheckObjects()) {
        const std::wstring module = LoadedLibrary();
        m_report.Item(L"Library", module);
        CheckVersion(module);
        if (m_isRegistered)
            CheckTypeLibrary(module);
        CheckCatalogue(module);
    }
    CheckLog(m_report);
    m_report.Summary();
    return m_report.Problems() == 0 ? ExitOk : ExitFindings;
}

bool Checkup::SelectProgram(const std::wstring& program) {
    m_report.Item(L"Program", program);
    const auto bitness = BitnessOf(program);
    if (!bitness)
        return Cause(L"this is not a program that can be read", L"name the program's .exe file");
    if (*bitness != OwnBitness)
        return Cause(std::wstring(L"the program is ") + Name(*bitness) + L", this tool is " +
                         Name(OwnBitness),
                     std::wstring(L"use the ") + Name(*bitness) + L" tool");
    if (m_context.OfProgram(program) == ActivationContext::Result::Failed)
        return Cause(L"the program's manifest cannot be used: " +
                         ErrorText(HRESULT_FROM_WIN32(GetLastError())),
                     std::wstring(L"put ") + AssemblyManifest +
                         L" and Tarnwick.dll beside the program; sxstrace shows what is missing");
    return true;
}

/// Sets how objects are created. Reports why they cannot be.
bool Checkup::SelectLibrary() {
    if (ActivationContext::SelectsLibrary()) {
        m_report.Item(L"Found through", L"the program's manifest");
        return true;
    }
    if (!RegisteredModule().empty())
        return SelectRegistered();
    const std::wstring manifest = FolderOf(ToolPath()) + AssemblyManifest;
    if (!FileExists(manifest))
        return NotRegistered();
    m_report.Item(L"Found through", manifest);
    const std::wstring module = FolderOf(manifest) + L"Tarnwick.dll";
    if (!FileExists(module))
        return Cause(L"the manifest's library does not exist: " + module,
                     L"put Tarnwick.dll beside the manifest");
    if (!m_context.OfFile(manifest))
        return Cause(L"the manifest cannot be used: " + ErrorText(HRESULT_FROM_WIN32(GetLastError())),
                     L"put Tarnwick.dll beside it; sxstrace shows what is missing");
    return true;
}

bool Checkup::NotRegistered() {
    const std::wstring other = SystemHasBoth() ? RegisteredModule(Other(OwnBitness)) : L"";
    ShowRegistration(OwnBitness, RegisteredClasses(OwnBitness));
    if (!other.empty()) {
        const std::wstring name = Name(Other(OwnBitness));
        return Cause(L"the library is registered for " + name + L" programs only: " + other,
                     L"to check it, use the " + name + L" tool; for " + Name(OwnBitness) +
                         L" programs, register the " + Name(OwnBitness) + L" library with " + Regsvr32());
    }
    const std::wstring beside = FolderOf(ToolPath()) + L"Tarnwick.dll";
    return Cause(L"the library is not registered",
                 FileExists(beside) ? Register(beside)
                                    : L"install it, or run as administrator in its folder: " + Regsvr32() +
                                          L" Tarnwick.dll");
}

bool Checkup::SelectRegistered() {
    m_isRegistered = true;
    const auto classes = RegisteredClasses(OwnBitness);
    m_report.Item(L"Found through", L"the registry");
    ShowRegistration(OwnBitness, classes);
    if (SystemHasBoth())
        ShowRegistration(Other(OwnBitness), RegisteredClasses(Other(OwnBitness)));
    return CheckFile(RegisteredModule()) && CheckRegistration(classes);
}

void Checkup::ShowRegistration(Bitness bitness, const std::vector<ClassRegistration>& classes) {
    const auto count = std::count_if(classes.begin(), classes.end(), [](const ClassRegistration& each) {
        return each.hasProgId && !each.file.empty();
    });
    const std::wstring module = RegisteredModule(bitness);
    m_report.Item(std::wstring(Name(bitness)) + L" programs",
                  AllClasses(static_cast<std::size_t>(count)) + (module.empty() ? L"" : L", " + module));
}

bool Checkup::CheckFile(const std::wstring& module) {
    if (!FileExists(module))
        return Cause(L"the registered library does not exist: " + module,
                     L"repair the installation, or run as administrator in the library's folder: " +
                         Regsvr32() + L" Tarnwick.dll");
    const auto bitness = BitnessOf(module);
    if (!bitness)
        return Cause(L"the registered file is not a library: " + module, L"install the library again");
    if (*bitness != OwnBitness)
        return Cause(std::wstring(L"the registered library is ") + Name(*bitness) + L", this tool is " +
                         Name(OwnBitness) + L": " + module,
                     std::wstring(L"register the ") + Name(OwnBitness) + L" library with " + Regsvr32());
    const HMODULE loaded = LoadLibraryExW(module.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!loaded)
        return Cause(L"the registered library cannot be loaded: " +
                         ErrorText(HRESULT_FROM_WIN32(GetLastError())),
                     L"install the library again");
    FreeLibrary(loaded);
    return true;
}

bool Checkup::CheckRegistration(const std::vector<ClassRegistration>& classes) {
    const std::wstring module = RegisteredModule();
    std::wstring details;
    for (const ClassRegistration& each : classes) {
        std::wstring detail;
        if (each.file.empty() || !each.hasProgId)
            detail = L" is missing";
        else if (CompareStringOrdinal(each.file.c_str(), -1, module.c_str(), -1, TRUE) != CSTR_EQUAL)
            detail = L" has another file, " + each.file;
        else if (each.threadingModel != L"Apartment")
            detail = L" has the threading model " + Quoted(each.threadingModel);
        if (!detail.empty())
            details += (details.empty() ? L"" : L"; ") + each.name + detail;
    }
    return details.empty() || Cause(L"the registration is damaged: " + details, RegisterAgain(module));
}

/// Creates all objects. Their failures have one cause.
bool Checkup::CheckObjects() {
    std::size_t created = 0;
    std::wstring failure;
    for (const wchar_t* className : ClassNames) {
        try {
            RecordObject(className).Xml();
            ++created;
        } catch (const ToolError& error) {
            failure = failure.empty() ? error.Message() : failure;
        }
    }
    m_report.Item(L"Objects", AllClasses(created) + L" can be created and write their XML");
    return failure.empty() ||
           Cause(failure, m_isRegistered ? RegisterAgain(RegisteredModule())
                                         : L"put " + std::wstring(Name(OwnBitness)) +
                                               L" Tarnwick.dll beside the manifest that names it");
}

void Checkup::CheckVersion(const std::wstring& module) {
    const std::wstring version = VersionOf(module);
    m_report.Item(L"Version", version.empty() ? L"unknown" : version);
    if (QxVersion(version) < QxVersion(PROJECT_VERSION))
        m_report.Problem(L"the library is older than this tool, version " PROJECT_VERSION,
                         std::wstring(L"install version ") + PROJECT_VERSION +
                             L" of the library, or use its own tool");
}

void Checkup::CheckTypeLibrary(const std::wstring& module) {
    UniqueBstr path;
    HRESULT result = QueryPathOfRegTypeLib(LIBID_JobObjectsLib, 1, 0, LibraryLocale, path.Put());
    m_report.Item(L"Type library", SUCCEEDED(result) ? std::wstring(path.View().data()) : L"not registered");
    ComPtr<ITypeLib> library;
    if (SUCCEEDED(result))
        result = LoadRegTypeLib(LIBID_JobObjectsLib, 1, 0, LibraryLocale, library.Put());
    if (FAILED(result))
        m_report.Problem(
            L"clients in other apartments and early-bound scripts cannot load the type library: " +
                ErrorText(result),
            RegisterAgain(module));
}

void Checkup::CheckCatalogue(const std::wstring& module) {
    const std::wstring path = CatalogueBeside(module);
    m_report.Item(L"Catalogue", path);
    try {
        const CatalogueResult result = LintCatalogueFile(path, nullptr);
        if (!result.summary.empty())
            m_report.Item(L"Catalogue entries", result.summary);
        if (result.problems > 0)
            m_report.Problem(L"the catalogue has " + Count(result.problems, L"mistake"),
                             L"run: jobobjects catalogue \"" + path + L"\"");
    } catch (const ToolError& error) {
        m_report.Problem(L"the catalogue cannot be read: " + error.Message(),
                         L"put JobAttributes.xml beside the library");
    }
}

} // namespace

ExitCode Check(const Options& options) {
    return Checkup(options.format).Run(options);
}
