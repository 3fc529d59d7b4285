#include "Rows.h"

#include <benchmark/benchmark.h>

#include <windows.h>
#include <objbase.h>

#include <algorithm>
#include <string_view>
#include <vector>

// Runs all rows. Takes Google Benchmark's options, such as --benchmark_filter=Xml, and --check, which fails
// on a missed goal.

int main(int count, char** arguments) {
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    char repetitions[] = "--benchmark_repetitions=100";
    std::vector<char*> options{arguments[0], interleaving, repetitions}; // defaults; later options win
    bool check = false;
    for (int i = 1; i < count; ++i) {
        if (std::string_view(arguments[i]) == "--check")
            check = true;
        else
            options.push_back(arguments[i]);
    }
    int used = static_cast<int>(options.size());
    benchmark::Initialize(&used, options.data());
    if (benchmark::ReportUnrecognizedArguments(used, options.data()))
        return 1;
    Require(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED) == S_OK, "COM");

    Table table;
    AddSizeRows(table);
    AddRecordRows(table);
    AddJobObjectRows(table);
    AddLargeRows(table);
    AddCatalogueRow(table);
    AddClassRows(table);
    AddScriptRows(table);
    AddLogRows(table);
    table.Print();
    CoUninitialize();
    return check && table.Missed() > 0 ? 1 : 0;
}
