#include "Files.h"

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

std::vector<std::wstring> FilesMatching(const std::wstring& name) {
    std::vector<std::wstring> files;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(name.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return files;
    const CloseSearch close{search};
    const std::wstring folder = name.substr(0, FolderLength(name));
    std::wstring pattern = name.substr(folder.size());
    if (pattern == L"*.*") // also matches names without a dot, as in cmd.exe
        pattern = L"*";
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && Matches(found.cFileName, pattern))
            files.push_back(folder + found.cFileName);
    } while (FindNextFileW(search, &found));
    std::sort(files.begin(), files.end(), [](const std::wstring& a, const std::wstring& b) {
        return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    });
    return files;
}

} // namespace

bool HasWildcard(const std::wstring& name) {
    return name.find_first_of(L"*?", FolderLength(name)) != std::wstring::npos;
}

std::vector<std::wstring> ExpandWildcards(const std::vector<std::wstring>& names) {
    std::vector<std::wstring> files;
    for (const std::wstring& name : names) {
        const auto matching = HasWildcard(name) ? FilesMatching(name) : std::vector<std::wstring>();
        if (matching.empty())
            files.push_back(name);
        else
            files.insert(files.end(), matching.begin(), matching.end());
    }
    return files;
}
