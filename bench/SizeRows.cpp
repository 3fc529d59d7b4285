#include "Rows.h"

#include "tests/support/LibraryMemory.h"

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
    Require(!GetModuleHandleW(L"Tarnwick.dll"), "the library is loaded already");
    const HMODULE library = LoadLibraryW(Library().c_str());
    Require(library, "the library");
    table.Figure("the library", "heap after attach", static_cast<double>(LibraryMemory::Now().bytes) / 1024.0,
                 64, "KiB");
    FreeLibrary(library);
}
