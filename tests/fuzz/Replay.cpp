// Runs a harness once over each file of the given folders: the corpus and the regressions. Needs no fuzzer.
// Prints each file's name first, so a failure follows the name of its input.

#include "Fuzzing.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

void RunFile(const std::filesystem::path& path) {
    std::printf("%s\n", path.filename().string().c_str());
    std::fflush(stdout);
    std::ifstream file(path, std::ios::binary);
    Fuzzing::Require(file.is_open(), "cannot open the file");
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    RunInput(bytes);
}

} // namespace

int main(int count, char** arguments) {
    int files = 0;
    for (int folder = 1; folder < count; ++folder) {
        if (!std::filesystem::is_directory(arguments[folder]))
            continue; // a harness without regressions
        for (const auto& entry : std::filesystem::directory_iterator(arguments[folder])) {
            RunFile(entry.path());
            ++files;
        }
    }
    std::printf("%d inputs\n", files);
    return files == 0;
}
