#include "tests/support/ComClient.h"
#include "tests/support/Library.h"

#include <winver.h>

#include <algorithm>
#include <set>

// The module file: exports, imports, version and string table.

namespace {

/// Reads the headers of a loaded module.
class Image {
public:
    explicit Image(HMODULE module) : m_base(reinterpret_cast<const BYTE*>(module)) {
        const auto* dos = At<IMAGE_DOS_HEADER>(0);
        REQUIRE(dos->e_magic == IMAGE_DOS_SIGNATURE);
        m_headers = At<IMAGE_NT_HEADERS>(static_cast<DWORD>(dos->e_lfanew));
        REQUIRE(m_headers->Signature == IMAGE_NT_SIGNATURE);
    }

    template<class Type>
    const Type* At(DWORD address) const {
        return reinterpret_cast<const Type*>(m_base + address);
    }
    const IMAGE_NT_HEADERS& Headers() const { return *m_headers; }
    const IMAGE_DATA_DIRECTORY& Directory(unsigned index) const {
        return m_headers->OptionalHeader.DataDirectory[index];
    }

private:
    const BYTE* m_base;
    const IMAGE_NT_HEADERS* m_headers;
};

std::string LowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 'a' - 'A') : c; });
    return text;
}

std::set<std::string> ImportedModules(const Image& image) {
    std::set<std::string> modules;
    const DWORD start = image.Directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress;
    REQUIRE(start != 0);
    for (const auto* entry = image.At<IMAGE_IMPORT_DESCRIPTOR>(start); entry->Name; ++entry)
        modules.insert(LowerCase(image.At<char>(entry->Name)));
    return modules;
}

std::wstring StringResource(const Library& library, UINT id) {
    wchar_t text[256];
    const int length = LoadStringW(library.Module(), id, text, static_cast<int>(std::size(text)));
    return std::wstring(text, static_cast<std::size_t>(length));
}

std::vector<BYTE> VersionResource(const std::wstring& path) {
    DWORD unused = 0;
    const DWORD size = GetFileVersionInfoSizeW(path.c_str(), &unused);
    REQUIRE(size > 0);
    std::vector<BYTE> block(size);
    REQUIRE(GetFileVersionInfoW(path.c_str(), 0, size, block.data()) != 0);
    return block;
}

std::wstring VersionText(const std::vector<BYTE>& block, const std::wstring& name) {
    void* text = nullptr;
    UINT length = 0;
    INFO(Narrow(name));
    REQUIRE(VerQueryValueW(block.data(), (L"\\StringFileInfo\\040904B0\\" + name).c_str(), &text, &length) !=
            0);
    return static_cast<const wchar_t*>(text);
}

} // namespace

TEST_CASE("Exports_are_the_four_entry_points_undecorated") {
    const Library library;
    const Image image(library.Module());
    const DWORD start = image.Directory(IMAGE_DIRECTORY_ENTRY_EXPORT).VirtualAddress;
    REQUIRE(start != 0);
    const auto* exports = image.At<IMAGE_EXPORT_DIRECTORY>(start);
    const auto* names = image.At<DWORD>(exports->AddressOfNames);
    std::vector<std::string> found;
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        found.emplace_back(image.At<char>(names[i]));
    CHECK(found == std::vector<std::string>{"DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer",
                                            "DllUnregisterServer"});
    CHECK(exports->NumberOfFunctions == 4); // none by ordinal only
}

TEST_CASE("Imports_come_from_the_system_alone") {
    const Library library;
    const Image image(library.Module());
    const std::set<std::string> system = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll",
                                          "oleaut32.dll"};
    const std::set<std::string> imported = ImportedModules(image);
    CHECK_FALSE(imported.empty());
    for (const std::string& module : imported) {
        INFO(module);
        CHECK(system.count(module) == 1);
    }
    CHECK(image.Directory(IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT).VirtualAddress == 0);
}

TEST_CASE("Image_is_a_relocatable_library_of_the_bitness_of_its_build") {
    const Library library;
    const IMAGE_NT_HEADERS& headers = Image(library.Module()).Headers();
#ifdef _WIN64
    CHECK(headers.FileHeader.Machine == IMAGE_FILE_MACHINE_AMD64);
#else
    CHECK(headers.FileHeader.Machine == IMAGE_FILE_MACHINE_I386);
#endif
    CHECK((headers.FileHeader.Characteristics & IMAGE_FILE_DLL) != 0);
    CHECK((headers.FileHeader.Characteristics & IMAGE_FILE_RELOCS_STRIPPED) == 0);
}

TEST_CASE("VersionResource_is_the_project_version") {
    const std::vector<BYTE> block = VersionResource(LibraryPath());
    void* value = nullptr;
    UINT length = 0;
    REQUIRE(VerQueryValueW(block.data(), L"\\", &value, &length) != 0);
    REQUIRE(length == sizeof(VS_FIXEDFILEINFO));
    const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    const std::string file = std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                             std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                             std::to_string(HIWORD(fixed->dwFileVersionLS));
    CHECK(file == PROJECT_VERSION);
    CHECK(LOWORD(fixed->dwFileVersionLS) == 0);
    CHECK(fixed->dwProductVersionMS == fixed->dwFileVersionMS);
    CHECK(fixed->dwProductVersionLS == fixed->dwFileVersionLS);
    CHECK(fixed->dwFileType == VFT_DLL);
    CHECK(Narrow(VersionText(block, L"FileVersion")) == PROJECT_VERSION);
    CHECK(Narrow(VersionText(block, L"ProductVersion")) == PROJECT_VERSION);
    CHECK_TEXT(VersionText(block, L"OriginalFilename"), L"Tarnwick.dll");
}

TEST_CASE("StringTable_holds_four_texts_and_no_other") {
    const Library library;
    CHECK_TEXT(StringResource(library, 100), L"JobObjects");
    CHECK_TEXT(StringResource(library, 101), L"SOFTWARE\\Corvane\\PrintAgent\\JobObjects");
    CHECK_TEXT(StringResource(library, 103), L"The PrintJob LogTargetType '%s' is not supported.");
    CHECK_TEXT(StringResource(library, 104),
               L"The %s property is not supported when the LogTargetType is %s.");
    const std::set<UINT> used = {100, 101, 103, 104};
    for (UINT id = 1; id < 1000; ++id) {
        INFO(id);
        CHECK(StringResource(library, id).empty() == (!used.contains(id)));
    }
}

TEST_CASE("TypeLibraryResource_is_resource_one") {
    const Library library;
    CHECK(FindResourceW(library.Module(), MAKEINTRESOURCEW(1), L"TYPELIB") != nullptr);
    CHECK(FindResourceW(library.Module(), MAKEINTRESOURCEW(2), L"TYPELIB") == nullptr);
}
