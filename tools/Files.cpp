#include "Files.h"

#include "Console.h"
#include "SystemError.h"
#include "TextFile.h"

#include <windows.h>

#include <algorithm>

namespace {

struct CloseSearch {
    HANDLE search;
    ~CloseSearch() { FindClose(search); }
};

std::size_t FolderLength(const std::wstring& name) {
    return name.find_last_of(L"\\/:") + 1; // without a separator npos + 1, that is 0
}

bool SameLetter(wchar_t a, wchar_t b) {
    return CompareStringOrdinal(&a, 1, &b, 1, TRUE) == CSTR_EQUAL;
}

/// The system also compares patterns with short names, so that "*.xml" would match "a.xml_old".
bool Matches(std::wstring_view name, std::wstring_view pattern) {
    std::size_t at = 0, in = 0, starAt = std::wstring_view::npos, retry = 0;
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == L'*') {
            starAt = in++;
            retry = at;
        } else if (in < pattern.size() && (pattern[in] == L'?' || SameLetter(pattern[in], name[at]))) {
            ++at;
            ++in;
        } else if (starAt != std::wstring_view::npos) {
            in = starAt + 1;
            at = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', in) == std::wstring_view::npos;
}

/// The entries of a folder that match the last component of a name, with the folder's path, sorted.
std::vector<std::wstring> EntriesMatching(const std::wstring& name, bool areFolders) {
    std::vector<std::wstring> entries;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(name.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        // A folder that cannot be read; a missing one is reported when its file is opened.
        if (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND && error != ERROR_INVALID_NAME)
            throw ToolError(name + L": " + ErrorText(HRESULT_FROM_WIN32(error)));
        return entries;
    }
    const CloseSearch close{search};
    const std::wstring folder = name.substr(0, FolderLength(name));
    std::wstring pattern = name.substr(folder.size());
    if (pattern == L"*.*") // also matches names without a dot, as in cmd.exe
        pattern = L"*";
    do {
        const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        if (isFolder == areFolders && Matches(found.cFileName, pattern))
            entries.push_back(folder + found.cFileName);
    } while (FindNextFileW(search, &found));
    std::sort(entries.begin(), entries.end(), [](const std::wstring& a, const std::wstring& b) {
        return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    });
    return entries;
}

/// A link to a folder could lead back.
bool IsLink(const std::wstring& folder) {
    return (GetFileAttributesW(folder.c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the longest path
void AddFilesBelow(const std::wstring& folder, std::vector<std::wstring>& files) {
    const std::wstring inside = FolderLength(folder) == folder.size() ? folder : folder + L"\\";
    const auto matching = EntriesMatching(inside + L"*.xml", false);
    files.insert(files.end(), matching.begin(), matching.end());
    for (const std::wstring& below : EntriesMatching(inside + L"*", true))
        if (!below.ends_with(L"\\.") && !below.ends_with(L"\\..") && !IsLink(below))
            AddFilesBelow(below, files);
}

} // namespace

bool HasWildcard(const std::wstring& name) {
    return name.find_first_of(L"*?", FolderLength(name)) != std::wstring::npos;
}

std::vector<std::wstring> ExpandWildcards(const std::vector<std::wstring>& names) {
    std::vector<std::wstring> files;
    for (const std::wstring& name : names) {
        const auto matching = HasWildcard(name) ? EntriesMatching(name, false) : std::vector<std::wstring>();
        if (matching.empty())
            files.push_back(name);
        else
            files.insert(files.end(), matching.begin(), matching.end());
    }
    return files;
}

std::vector<std::wstring> ExpandFolders(const std::vector<std::wstring>& names) {
    std::vector<std::wstring> files;
    for (const std::wstring& name : names) {
        if (!IsFolder(name)) {
            files.push_back(name);
            continue;
        }
        const std::size_t before = files.size();
        AddFilesBelow(name, files);
        if (files.size() == before)
            throw ToolError(name + L": the folder has no *.xml files");
    }
    return files;
}
