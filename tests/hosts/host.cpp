// A host of the library, built with a static runtime and with the shared runtimes of both thread models.
//
//   host <situation> <library> [argument]
//
// Each situation runs the short client many times and checks that the process's heap and handles do not grow.
// The last line proves that the program completed.

#include "Check.h"
#include "Situations.h"

#include <cstring>
#include <cstdlib>

namespace {

struct Entry {
    const char* name;
    void (*run)(const Situation&);
};

constexpr Entry Entries[] = {
    {"plain", RunPlain},
    {"class_objects", RunClassObjects},
    {"unregistered", RunUnregistered},
    {"older_threads", RunOlderThreads},
    {"small_stack", RunSmallStack},
    {"stack_of_4_bytes", RunStackOf4Bytes},
    {"unmasked_floating_point", RunUnmaskedFloatingPoint},
    {"decimal_comma", RunDecimalComma},
    {"turkish", RunTurkish},
    {"plugin_before", RunPluginBefore},
    {"plugin_after", RunPluginAfter},
    {"plugin_uses", RunPluginUses},
    {"runtime_released", RunRuntimeReleased},
    {"log_written", RunLogWritten},
    {"log_unreachable", RunLogUnreachable},
};

} // namespace

int wmain(int count, wchar_t** arguments) {
    CHECK_THAT(count >= 3);
    char name[64];
    CHECK_THAT(std::wcstombs(name, arguments[1], sizeof(name)) < sizeof(name));
    for (const Entry& entry : Entries)
        if (std::strcmp(entry.name, name) == 0) {
            entry.run({arguments[2], count > 3 ? arguments[3] : L""});
            std::printf("host reached its end: %s\n", name);
            return 0;
        }
    std::printf("no such situation: %s\n", name);
    return 1;
}
