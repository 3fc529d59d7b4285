// The real reader of the catalogue file, in a separate program because unit_tests replaces it.

#include "../CapturedLog.h"

#include "JobObjects/contents/CatalogueFile.h"
#include "common/log/FileHandle.h"
#include "tests/support/TestFolder.h"

#include <catch2/catch.hpp>

#include <string>

using Lines = std::vector<std::wstring>;

namespace {

/// A module with the product's name, loaded from a temporary folder. The reader looks for it.
class LoadedModule {
public:
    LoadedModule() {
        // Only its name and path matter; none of its code runs, so a copy of this program will do.
        REQUIRE(CopyFileW(QxMisc::GetModuleFileName(nullptr).c_str(), Path().c_str(), TRUE));
        m_module = LoadLibraryExW(Path().c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
        REQUIRE(m_module);
    }
    ~LoadedModule() { FreeLibrary(m_module); }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    std::wstring CataloguePath() const { return m_folder.File(L"JobAttributes.xml"); }

    /// Writes the catalogue and returns it, still open for writing.
    FileHandle Write(const std::string& bytes) const {
        FileHandle file =
            OwnedFile(CreateFileW(CataloguePath().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                  nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written = 0;
        REQUIRE(file);
        REQUIRE(WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
        return file;
    }

private:
    std::wstring Path() const { return m_folder.File(L"Tarnwick.dll"); }

    TestFolder m_folder;
    HMODULE m_module = nullptr;
};

std::wstring FailureLine(const std::wstring& path, DWORD error) {
    return L"Failed to load job attributes xml file '" + path + L"'. " + QxMisc::GetSystemMessage(error);
}

} // namespace

TEST_CASE("ReadCatalogueFile_without_the_module_fails_and_reads_no_other_folder") {
    std::wstring text = L"before";
    CapturedLog log;
    CHECK_FALSE(ReadCatalogueFile(text));
    CHECK(text == L"before");
    CHECK(log.TakeLines() == Lines{FailureLine(L"JobAttributes.xml", ERROR_MOD_NOT_FOUND)});
}

TEST_CASE("ReadCatalogueFile_missing_file_is_logged_with_path_and_reason") {
    const LoadedModule module;
    std::wstring text;
    CapturedLog log;
    CHECK_FALSE(ReadCatalogueFile(text));
    CHECK(log.TakeLines() == Lines{FailureLine(module.CataloguePath(), ERROR_FILE_NOT_FOUND)});
}

TEST_CASE("ReadCatalogueFile_byte_order_mark_selects_the_encoding") {
    const LoadedModule module;
    std::wstring text;
    module.Write("<a>\xC3\xA4</a>");
    CHECK(ReadCatalogueFile(text));
    CHECK(text == L"<a>\u00e4</a>");
    module.Write("\xEF\xBB\xBF<b/>");
    CHECK(ReadCatalogueFile(text));
    CHECK(text == L"<b/>");
    module.Write(std::string("\xFF\xFE<\0c\0/\0>\0", 10));
    CHECK(ReadCatalogueFile(text));
    CHECK(text == L"<c/>");
}

TEST_CASE("ReadCatalogueFile_empty_file_is_read_as_empty_text") {
    const LoadedModule module;
    module.Write("");
    std::wstring text = L"before";
    CHECK(ReadCatalogueFile(text));
    CHECK(text.empty());
}

TEST_CASE("ReadCatalogueFile_file_open_for_writing_elsewhere_is_read") {
    const LoadedModule module;
    const FileHandle writer = module.Write("<open/>");
    std::wstring text;
    CHECK(ReadCatalogueFile(text));
    CHECK(text == L"<open/>");
}

TEST_CASE("ReadCatalogueFile_file_locked_elsewhere_is_refused") {
    const LoadedModule module;
    module.Write("<a/>");
    const QxKernelHandle locked(
        CreateFileW(module.CataloguePath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    REQUIRE(locked.IsOpen());
    std::wstring text;
    CapturedLog log;
    CHECK_FALSE(ReadCatalogueFile(text));
    CHECK(log.TakeLines() == Lines{FailureLine(module.CataloguePath(), ERROR_SHARING_VIOLATION)});
}

TEST_CASE("ReadCatalogueFile_folder_with_the_name_is_refused") {
    const LoadedModule module;
    REQUIRE(CreateDirectoryW(module.CataloguePath().c_str(), nullptr));
    std::wstring text;
    CapturedLog log;
    CHECK_FALSE(ReadCatalogueFile(text));
    CHECK(log.TakeLines() == Lines{FailureLine(module.CataloguePath(), ERROR_ACCESS_DENIED)});
    RemoveDirectoryW(module.CataloguePath().c_str());
}

TEST_CASE("ReadCatalogueFile_file_beyond_16_MiB_is_refused") {
    const LoadedModule module;
    {
        const FileHandle file = module.Write("<a/>");
        SetFilePointer(file.get(), 16 * 1024 * 1024 + 1, nullptr, FILE_BEGIN);
        REQUIRE(SetEndOfFile(file.get()));
    }
    std::wstring text;
    CapturedLog log;
    CHECK_FALSE(ReadCatalogueFile(text));
    // A code without a system text is logged first.
    const Lines lines = log.TakeLines();
    REQUIRE_FALSE(lines.empty());
    CHECK(lines.back() == FailureLine(module.CataloguePath(), ERROR_FILE_TOO_LARGE));
}
