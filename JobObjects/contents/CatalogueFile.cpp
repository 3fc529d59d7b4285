#include "CatalogueFile.h"

#include "common/QxSystem.h"
#include "common/QxTHandle.h"
#include "common/text/TextEncoding.h"
#include "common/log/QxLogger.h"

#include <windows.h>

namespace {

/// Far larger than any catalogue, so that a wrong file cannot exhaust the host's memory.
constexpr LONGLONG MaxFileSize = 16LL * 1024 * 1024;

/// Full path of the file. If the module cannot be found: false, with the last error set and only the file
/// name in path. A file in the host's directory must not be used.
bool FindCatalogue(std::wstring& path) {
    const HMODULE module = GetModuleHandleW(L"Tarnwick.dll");
    std::wstring directory;
    if (module)
        directory = QxMisc::GetModuleFileName(module);
    const bool found = !directory.empty();
    directory.erase(directory.find_last_of(L"\\/") + 1); // npos + 1 is 0
    path = directory + L"JobAttributes.xml";
    return found;
}

/// On failure false, with the last error set.
bool ReadWhole(HANDLE file, std::string& bytes) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file, &size))
        return false;
    if (size.QuadPart > MaxFileSize) {
        SetLastError(ERROR_FILE_TOO_LARGE);
        return false;
    }
    bytes.resize(static_cast<std::size_t>(size.QuadPart));
    DWORD read = 0;
    if (!ReadFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
        return false;
    bytes.resize(read); // less if another process has truncated the file
    return true;
}

bool LogFailure(const std::wstring& path, DWORD error) {
    LogError(L"Failed to load job attributes xml file '%ls'. %ls", path.c_str(),
             QxMisc::GetSystemMessage(error).c_str());
    return false;
}

} // namespace

bool ReadCatalogueFile(std::wstring& text) {
    std::wstring path;
    if (!FindCatalogue(path))
        return LogFailure(path, GetLastError());
    const QxKernelHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                          nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    std::string bytes;
    if (!file.IsOpen() || !ReadWhole(file.Get(), bytes))
        return LogFailure(path, GetLastError());
    text = TextEncoding::Decode(bytes);
    return true;
}
