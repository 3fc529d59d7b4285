#include "Rows.h"

#include <windows.h>

void AddSizeRows(Table& table) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    Require(GetFileAttributesExW(SHIPPED_LIBRARY, GetFileExInfoStandard, &data), "the library's file");
    table.Figure("the library", "stripped", data.nFileSizeLow / 1000.0, 700, "KB");
}
