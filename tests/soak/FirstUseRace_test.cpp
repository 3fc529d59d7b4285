#include "common/com/Bstr.h"
#include "common/com/ComPtr.h"
#include "tests/support/ComClient.h"
#include "tests/support/Library.h"
#include "tests/support/Soak.h"

#include <atomic>
#include <cstdio>
#include <memory>

// Many threads use a newly loaded library at once: its class objects and the catalogue are created once, and
// every thread gets them complete. SOAK_FIRST_USES is the number of loads.

namespace {

constexpr int ThreadCount = 64;

/// Shared by the threads of one round. They must not assert, because assertions are not thread-safe.
struct Round {
    const Library& library;
    HANDLE start;
    std::atomic<int> ready{0};
    /// Each class's class object, from the first thread to get it. All threads must get the same.
    std::vector<std::atomic<void*>> classObjects = std::vector<std::atomic<void*>>(LibraryClasses().size());
    std::atomic<int> wrong{0};
};

struct Racer {
    Round* round;
    int number;
};

/// Gets the class objects, in an order that depends on the thread.
bool FindsTheSameClassObjects(Round& round, int number) {
    const auto& classes = LibraryClasses();
    for (std::size_t i = 0; i < classes.size(); ++i) {
        const std::size_t index = (i + static_cast<std::size_t>(number)) % classes.size();
        ComPtr<IUnknown> found;
        if (round.library.GetClassObject(classes[index].classId, IID_IUnknown, found.PutVoid()) != S_OK)
            return false;
        void* expected = nullptr;
        if (!round.classObjects[index].compare_exchange_strong(expected, found.Get()) &&
            expected != found.Get())
            return false;
    }
    return true;
}

/// Generates database codes from words, which needs the catalogue.
bool TranslatesWords(Round& round) {
    ComPtr<IClassFactory> factory;
    ComPtr<IJobContents> contents;
    UniqueBstr codes;
    const UniqueBstr words(L"A4,Duplex,B&W,PostScript");
    return round.library.GetClassObject(__uuidof(JobContents), IID_IClassFactory, factory.PutVoid()) ==
               S_OK &&
           factory->CreateInstance(nullptr, __uuidof(IJobContents), contents.PutVoid()) == S_OK &&
           contents->GenerateContentsFromPageCounterInfo(words.Get(), 12, 2, 24, 12) == S_OK &&
           contents->get_DBCopyLines(codes.Put()) == S_OK && codes.View() == L"1,24,0,12,6";
}

DWORD WINAPI Race(void* argument) {
    const Racer& racer = *static_cast<Racer*>(argument);
    Round& round = *racer.round;
    const bool joined = SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED));
    ++round.ready;
    WaitForSingleObject(round.start, INFINITE);
    // Half of the threads start with the catalogue.
    const bool right = racer.number % 2
                           ? TranslatesWords(round) && FindsTheSameClassObjects(round, racer.number)
                           : FindsTheSameClassObjects(round, racer.number) && TranslatesWords(round);
    if (!joined || !right)
        ++round.wrong;
    if (joined)
        CoUninitialize();
    return 0;
}

void RunRound() {
    const Library library;
    Round round{library, CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    REQUIRE(round.start != nullptr);
    Racer racers[ThreadCount];
    HANDLE threads[ThreadCount];
    for (int i = 0; i < ThreadCount; ++i) {
        racers[i] = {&round, i};
        threads[i] =
            CreateThread(nullptr, 256 * 1024, Race, &racers[i], STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
        REQUIRE(threads[i] != nullptr);
    }
    while (round.ready < ThreadCount)
        Sleep(1);
    SetEvent(round.start);
    const DWORD waited = WaitForMultipleObjects(ThreadCount, threads, TRUE, 60000);
    if (waited == WAIT_TIMEOUT) {
        std::fputs("64 threads hang in their first use\n", stderr);
        std::fflush(stderr);
        ExitProcess(253); // the threads use this stack, so it must not unwind
    }
    for (const HANDLE thread : threads)
        CloseHandle(thread);
    CloseHandle(round.start);
    CHECK(round.wrong == 0);
    CHECK(library.CanUnloadNow() == S_OK);
}

} // namespace

TEST_CASE("Sixty_four_threads_at_first_use_get_the_same_class_objects_and_a_complete_catalogue") {
    LibraryClasses(); // initialised by this thread
    CoFreeUnusedLibrariesEx(0, 0);
    const int rounds = SoakCount("SOAK_FIRST_USES", 10);
    for (int i = 0; i < rounds; ++i) {
        // Each round loads the library anew.
        REQUIRE(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
        RunRound();
    }
    std::printf("%d loads of the library, each with %d threads at its first use\n", rounds, ThreadCount);
}
