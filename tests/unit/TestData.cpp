#include "TestData.h"

#include "tests/support/ProgramFolder.h"

#include <catch2/catch.hpp>

#include <fstream>
#include <iterator>

std::wstring ReadTestData(const char* fileName) {
    const std::filesystem::path path = TestDataFolder() / fileName;
    std::ifstream file(path, std::ios::binary);
    INFO(path.string());
    REQUIRE(file.is_open());
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    REQUIRE_FALSE(bytes.empty());
    return std::wstring(bytes.begin(), bytes.end());
}
