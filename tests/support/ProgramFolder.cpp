#include "ProgramFolder.h"

#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#endif

namespace {

std::filesystem::path ProgramFolder() {
#ifdef _WIN32
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    if (length == 0 || length == MAX_PATH)
        throw std::runtime_error("the program's path is unavailable");
    return std::filesystem::path(path).parent_path();
#else
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
#endif
}

} // namespace

std::filesystem::path BesideProgram(const char* fileName) {
    return ProgramFolder() / fileName;
}

std::filesystem::path TestDataFolder() {
    for (std::filesystem::path folder = ProgramFolder(); folder != folder.root_path();
         folder = folder.parent_path()) {
        std::filesystem::path data = folder / "tests" / "data";
        if (std::filesystem::is_directory(data))
            return data;
    }
    throw std::runtime_error("no folder above the program contains tests/data");
}
