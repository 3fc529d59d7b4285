#include "PlainFile.h"

#include "../QxMisc.h"

namespace {

QxKernelHandle OpenToWrite(std::wstring_view path, DWORD sharing, DWORD creation, DWORD flags) {
    return QxKernelHandle(CreateFileW(std::wstring(path).c_str(), GENERIC_WRITE, sharing, nullptr, creation,
                                      FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

/// Whether a file with a reparse point is a link. Others belong to the file system, which then has to resolve
/// them: compressed or remote storage.
bool LeadsElsewhere(HANDLE file) noexcept {
    FILE_ATTRIBUTE_TAG_INFO information;
    return !GetFileInformationByHandleEx(file, FileAttributeTagInfo, &information, sizeof(information)) ||
           IsReparseTagNameSurrogate(information.ReparseTag);
}

} // namespace

QxKernelHandle OpenPlainFile(std::wstring_view path, DWORD sharing, DWORD creation) {
    // A link in the file's place is opened itself, so that nothing is created where it leads.
    QxKernelHandle file = OpenToWrite(path, sharing, creation, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!file.IsOpen())
        return file;
    BY_HANDLE_FILE_INFORMATION information;
    const bool known = GetFileInformationByHandle(file.Get(), &information) != FALSE;
    const bool reparsed = known && (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!known || information.nNumberOfLinks > 1 || (reparsed && LeadsElsewhere(file.Get()))) {
        file.Close();
        SetLastError(ERROR_CANT_ACCESS_FILE);
    } else if (reparsed) {
        file.Close();
        file = OpenToWrite(path, sharing, OPEN_EXISTING, 0);
    }
    return file;
}

std::wstring PlainFileProblem(DWORD reason) {
    if (reason == ERROR_CANT_ACCESS_FILE)
        return L"It is a symbolic link or has a second name.";
    std::wstring text = QxMisc::GetSystemMessage(reason);
    QxMisc::ReplaceAll(text, L"%%", L"%"); // doubled for use in a format
    return text.empty() ? QxMisc::FormatString(L"Error %lu.", reason) : text;
}
