// check: diagnoses the installed library as clients see it.

#include "Catalogue.h"
#include "Commands.h"
#include "Console.h"
#include "Installation.h"
#include "RecordObject.h"
#include "Registry.h"
#include "SystemError.h"
#include "TextFile.h"

#include "common/com/Bstr.h"
#include "common/log/PlainFile.h"

#include <initguid.h> // makes the header define the LIBID
#include "JobObjects.h"

#include <algorithm>
#include <vector>

namespace {

constexpr LCID LibraryLocale = 0x0409;

class Report {
public:
    void Item(const std::wstring& label, const std::wstring& value) {
        constexpr std::size_t width = 18;
        std::wstring line = label;
        line.resize(std::max(width, line.size() + 1), L' ');
        Console::Line(line + value);
    }
    void Problem(const std::wstring& message) {
        ++m_problems;
        Console::Line(L"  problem: " + message);
    }
    void AddProblems(std::size_t count) { m_problems += count; }
    std::size_t Problems() const noexcept { return m_problems; }

private:
    std::size_t m_problems = 0;
};

/// "32-bit (x86)", from the PE header; empty if the file has none.
std::wstring BitnessOf(const std::wstring& path) {
    const Handle file = OpenToRead(path);
    if (!file)
        return L"";
    IMAGE_DOS_HEADER dos{};
    struct {
        DWORD signature;
        IMAGE_FILE_HEADER header;
    } nt{};
    DWORD read = 0;
    if (!ReadFile(file.get(), &dos, sizeof(dos), &read, nullptr) || read != sizeof(dos) ||
        dos.e_magic != IMAGE_DOS_SIGNATURE ||
        SetFilePointer(file.get(), dos.e_lfanew, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER ||
        !ReadFile(file.get(), &nt, sizeof(nt), &read, nullptr) || read != sizeof(nt) ||
        nt.signature != IMAGE_NT_SIGNATURE)
        return L"";
    switch (nt.header.Machine) {
    case IMAGE_FILE_MACHINE_I386:
        return L"32-bit (x86)";
    case IMAGE_FILE_MACHINE_AMD64:
        return L"64-bit (x64)";
    default:
        return L"machine type " + std::to_wstring(nt.header.Machine);
    }
}

std::wstring VersionOf(const std::wstring& path) {
    DWORD unused = 0;
    std::string block(GetFileVersionInfoSizeW(path.c_str(), &unused), '\0');
    VS_FIXEDFILEINFO* info = nullptr;
    UINT size = 0;
    if (block.empty() ||
        !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &size))
        return L"unknown";
    return std::to_wstring(HIWORD(info->dwFileVersionMS)) + L"." +
           std::to_wstring(LOWORD(info->dwFileVersionMS)) + L"." +
           std::to_wstring(HIWORD(info->dwFileVersionLS)) + L"." +
           std::to_wstring(LOWORD(info->dwFileVersionLS));
}

/// Checks one registered class. The first one sets `module`; the others must be in the same file.
void CheckClass(Report& report, const std::wstring& className, const std::wstring& file,
                std::wstring& module) {
    if (module.empty())
        module = file;
    else if (CompareStringOrdinal(file.c_str(), -1, module.c_str(), -1, TRUE) != CSTR_EQUAL)
        report.Problem(L"Corvane." + className + L" is registered with another file: " + file);
    const std::wstring model =
        ReadText(HKEY_CLASSES_ROOT, ServerKey(ClassIdText(className)), L"ThreadingModel").value_or(L"");
    if (model != L"Apartment")
        report.Problem(L"Corvane." + className + L" has the threading model '" + model +
                       L"', not 'Apartment'");
}

std::wstring OfAllClasses(std::size_t count) {
    return std::to_wstring(count) + L" of " + std::to_wstring(ClassNames.size()) + L" classes";
}

/// Checks that all classes are registered with one file. Returns its path, or an empty one.
std::wstring CheckClasses(Report& report) {
    std::wstring module;
    std::vector<std::wstring> missing;
    for (const std::wstring className : ClassNames) {
        const std::wstring file = RegisteredModule(className);
        if (file.empty())
            missing.push_back(className);
        else
            CheckClass(report, className, file, module);
    }
    report.Item(L"Registered", OfAllClasses(ClassNames.size() - missing.size()));
    if (module.empty()) {
        report.Problem(L"the library is not registered; run \"regsvr32 Tarnwick.dll\"");
        return module;
    }
    for (const std::wstring& className : missing)
        report.Problem(L"Corvane." + className + L" is not registered");
    return module;
}

void CheckModule(Report& report, const std::wstring& module) {
    report.Item(L"Library", module);
    const std::wstring bitness = BitnessOf(module);
    if (bitness.empty()) {
        report.Problem(L"this file is not a readable library");
        return;
    }
    report.Item(L"Bitness", bitness);
    report.Item(L"Version", VersionOf(module));
    report.Item(L"Threading model",
                ReadText(HKEY_CLASSES_ROOT, ServerKey(ClassIdText(ClassNames[0])), L"ThreadingModel")
                    .value_or(L"none"));
}

void CheckObjects(Report& report) {
    std::size_t created = 0;
    for (const wchar_t* className : ClassNames) {
        try {
            RecordObject record(className);
            record.Xml();
            ++created;
        } catch (const ToolError& error) {
            report.Problem(error.Message());
        }
    }
    report.Item(L"Objects", OfAllClasses(created) + L" can be created and write their XML");
}

void CheckTypeLibrary(Report& report) {
    UniqueBstr path;
    HRESULT result = QueryPathOfRegTypeLib(LIBID_JobObjectsLib, 1, 0, LibraryLocale, path.Put());
    if (FAILED(result)) {
        report.Item(L"Type library", L"not registered");
        report.Problem(L"clients in other apartments and early-bound scripts need it: " + ErrorText(result));
        return;
    }
    report.Item(L"Type library", std::wstring(path.View().data()));
    ComPtr<ITypeLib> library;
    result = LoadRegTypeLib(LIBID_JobObjectsLib, 1, 0, LibraryLocale, library.Put());
    if (FAILED(result))
        report.Problem(L"it cannot be loaded: " + ErrorText(result));
}

void CheckCatalogue(Report& report, const std::wstring& module) {
    const std::wstring path = CatalogueBeside(module);
    report.Item(L"Catalogue", path);
    try {
        report.AddProblems(LintCatalogueFile(path));
    } catch (const ToolError& error) {
        report.Problem(error.Message());
    }
}

/// Checks that this account can write the log file.
void CheckLogFile(Report& report, const std::wstring& file) {
    if (OpenPlainFile(file, FILE_SHARE_READ | FILE_SHARE_WRITE, OPEN_EXISTING))
        return;
    const DWORD reason = GetLastError();
    if (reason == ERROR_PATH_NOT_FOUND)
        report.Problem(L"the folder of the log file does not exist");
    else if (reason != ERROR_FILE_NOT_FOUND) // the first line creates the file
        report.Problem(L"the log file cannot be written: " + PlainFileProblem(reason));
}

void CheckLog(Report& report) {
    const std::wstring key = L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects\\Log";
    if (!KeyExists(HKEY_LOCAL_MACHINE, key)) {
        report.Item(L"Log", L"off: HKEY_LOCAL_MACHINE\\" + key + L" does not exist");
        return;
    }
    const auto number = [&](const wchar_t* name) {
        const auto value = ReadNumber(HKEY_LOCAL_MACHINE, key, name);
        if (!value && ValueExists(HKEY_LOCAL_MACHINE, key, name))
            report.Problem(std::wstring(L"log value ") + name + L" is not a REG_DWORD and counts as missing");
        return value.value_or(0);
    };
    const std::wstring file = ReadText(HKEY_LOCAL_MACHINE, key, L"FileName").value_or(L"");
    const bool on = number(L"Enabled") != 0;
    const bool trace = number(L"TraceLog") != 0;
    report.Item(L"Log", on ? L"on" : L"off");
    report.Item(L"  file", file.empty() ? L"none" : file);
    report.Item(L"  debugger output", trace ? L"on" : L"off");
    for (const wchar_t* name :
         {L"Options", L"Filters", L"Categories", L"Types", L"MaxFileSize", L"MaxDataSize"})
        report.Item(std::wstring(L"  ") + name, std::to_wstring(number(name)));
    if (on && file.empty() && !trace)
        report.Problem(L"the log is on, but has neither a file nor debugger output");
    if (!file.empty())
        CheckLogFile(report, file);
}

} // namespace

ExitCode Check(Arguments) {
    Report report;
    const std::wstring module = CheckClasses(report);
    if (!module.empty()) {
        CheckModule(report, module);
        CheckObjects(report);
        CheckTypeLibrary(report);
        CheckCatalogue(report, module);
    }
    CheckLog(report);
    Console::Line(report.Problems() == 0 ? L"No problem found."
                                         : std::to_wstring(report.Problems()) + L" problems found.");
    return report.Problems() == 0 ? ExitOk : ExitFindings;
}
