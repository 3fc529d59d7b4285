#include "Rows.h"

#include "tests/support/ProcessCounters.h"

#include <windows.h>

namespace {

std::wstring Library() {
    return SHIPPED_LIBRARY;
}

double FileKilobytes() {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    Require(GetFileAttributesExW(Library().c_str(), GetFileExInfoStandard, &data), "the library's file");
    return data.nFileSizeLow / 1000.0;
}

} // namespace

void AddSizeRows(Table& table) {
    table.Figure("the library", "stripped", FileKilobytes(), 700, "KB");
    // Every COM process has the library's imports; this program lacks one. Load it, so that it is not
    // counted.
    LoadLibraryW(L"advapi32.dll");
    Require(!GetModuleHandleW(L"Tarnwick.dll"), "the library is loaded already");
    const std::size_t before = ProcessCounters::Now().heapBytes;
    const HMODULE library = LoadLibraryW(Library().c_str());
    const std::size_t after = ProcessCounters::Now().heapBytes;
    Require(library, "the library");
    FreeLibrary(library);
    table.Figure("the library", "heap after attach",
                 (static_cast<double>(after) - static_cast<double>(before)) / 1024.0, 64, "KiB");
}
