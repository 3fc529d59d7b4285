#include "TestData.h"

#include <catch2/catch.hpp>

#include <fstream>
#include <iterator>

std::wstring ReadTestData(const char* fileName) {
    const std::string path = std::string(TEST_DATA_FOLDER) + "/" + fileName;
    std::ifstream file(path, std::ios::binary);
    INFO(path);
    REQUIRE(file.is_open());
    const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    REQUIRE_FALSE(bytes.empty());
    return std::wstring(bytes.begin(), bytes.end());
}
