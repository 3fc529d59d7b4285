#include "ProgramFolder.h"

#include <catch2/catch.hpp>

#include <windows.h>

std::wstring BesideProgram(const wchar_t* fileName) {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    REQUIRE(length > 0);
    REQUIRE(length < MAX_PATH);
    const std::wstring program(path, length);
    return program.substr(0, program.rfind(L'\\') + 1) + fileName;
}
