#include "RenameMark.h"

#include "FileLocks.h"

#include <string>

namespace {

FileHandle OpenShared(std::wstring_view path) {
    return OwnedFile(CreateFileW(std::wstring(path).c_str(), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
}

bool IsAnothers(HANDLE file, DWORD kind) noexcept {
    return !FileLocks::TryLock(file, FileLocks::Position(FileLocks::Renaming, 0), 1, kind) &&
           FileLocks::IsAnothers(GetLastError());
}

} // namespace

RenameMark::RenameMark(std::wstring_view path)
    : m_file(OpenShared(path)), m_isAnothers(m_file && ::IsAnothers(m_file.get(), LOCKFILE_EXCLUSIVE_LOCK)) {
}

bool RenameMark::IsSetOn(std::wstring_view path) {
    const FileHandle file = OpenShared(path);
    return file ? ::IsAnothers(file.get(), 0) : GetLastError() == ERROR_FILE_NOT_FOUND;
}
