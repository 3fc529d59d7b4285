#include "LinkFreeFile.h"

#include <string>

namespace {

bool IsLinkOrHidden(const std::wstring& folder) noexcept {
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    return attributes == INVALID_FILE_ATTRIBUTES ? GetLastError() == ERROR_ACCESS_DENIED
                                                 : (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

bool LeadsThroughLink(std::wstring_view path) {
    constexpr std::wstring_view separators = L"\\/";
    for (std::size_t end = path.find_first_of(separators, 1); end != std::wstring_view::npos;
         end = path.find_first_of(separators, end + 1)) {
        // With its separator: "C:" alone would be the drive's current folder.
        if (IsLinkOrHidden(std::wstring(path.substr(0, path[end - 1] == L':' ? end + 1 : end))))
            return true;
    }
    return false;
}

bool IsLink(HANDLE file) noexcept {
    BY_HANDLE_FILE_INFORMATION information;
    return !GetFileInformationByHandle(file, &information) ||
           information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT || information.nNumberOfLinks > 1;
}

} // namespace

QxKernelHandle OpenFileWithoutLinks(std::wstring_view path, DWORD sharing, DWORD creation) {
    QxKernelHandle file;
    if (LeadsThroughLink(path)) {
        SetLastError(ERROR_CANT_ACCESS_FILE);
        return file;
    }
    // A link in the file's place is opened itself, so that nothing is created where it leads.
    file = QxKernelHandle(CreateFileW(std::wstring(path).c_str(), GENERIC_WRITE, sharing, nullptr, creation,
                                      FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    if (file.IsOpen() && IsLink(file.Get())) {
        file.Close();
        SetLastError(ERROR_CANT_ACCESS_FILE);
    }
    return file;
}
