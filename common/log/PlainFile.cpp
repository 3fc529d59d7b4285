#include "PlainFile.h"

#include "common/text/Format.h"
#include "common/text/SystemText.h"
#include "common/text/Text.h"

namespace {

FileHandle OpenToWrite(std::wstring_view path, DWORD sharing, DWORD creation, DWORD flags) {
    return OwnedFile(CreateFileW(std::wstring(path).c_str(), GENERIC_WRITE, sharing, nullptr, creation,
                                 FILE_ATTRIBUTE_NORMAL | flags, nullptr));
}

/// Whether a reparse point is a link. Others, for compressed or remote storage, are resolved by the file
/// system.
bool LeadsElsewhere(HANDLE file) noexcept {
    FILE_ATTRIBUTE_TAG_INFO information;
    return !GetFileInformationByHandleEx(file, FileAttributeTagInfo, &information, sizeof(information)) ||
           IsReparseTagNameSurrogate(information.ReparseTag);
}

} // namespace

FileHandle OpenPlainFile(std::wstring_view path, DWORD sharing, DWORD creation) {
    // Opens a link itself, so that nothing is created at its target.
    FileHandle file = OpenToWrite(path, sharing, creation, FILE_FLAG_OPEN_REPARSE_POINT);
    if (!file)
        return file;
    BY_HANDLE_FILE_INFORMATION information;
    const bool known = GetFileInformationByHandle(file.get(), &information) != FALSE;
    const bool reparsed = known && (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    if (!known || information.nNumberOfLinks > 1 || (reparsed && LeadsElsewhere(file.get()))) {
        file.reset();
        SetLastError(ERROR_CANT_ACCESS_FILE);
    } else if (reparsed) {
        file.reset();
        file = OpenToWrite(path, sharing, OPEN_EXISTING, 0);
    }
    return file;
}

std::wstring PlainFileProblem(DWORD reason) {
    if (reason == ERROR_CANT_ACCESS_FILE)
        return L"It is a symbolic link or has a second name.";
    const std::wstring found = SystemText(reason, 0, SystemTextLines::One);
    const std::wstring_view text = QxMisc::Trimmed(found);
    return text.empty() ? FormatText(L"Error %lu.", reason) : std::wstring(text);
}
