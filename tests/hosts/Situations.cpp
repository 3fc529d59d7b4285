#include "Situations.h"

#include "Cycles.h"
#include "ShortClient.h"

#include <windows.h>
#include <objbase.h>

#include <clocale>
#include <cstdint>
#include <cstring>
#include <cwchar>

namespace {

void UseRegisteredOnce() {
    UseRegisteredClasses();
    UnloadRegistered();
}

void CheckRegisteredCycles() {
    CHECK_THAT(CoInitialize(nullptr) == S_OK);
    CheckCycles(UseRegisteredOnce);
    CoUninitialize();
}

DWORD WINAPI UseInApartment(void*) {
    CHECK_THAT(CoInitialize(nullptr) == S_OK);
    UseRegisteredClasses();
    CoUninitialize();
    return 0;
}

void Join(HANDLE thread) {
    CHECK_THAT(thread != nullptr);
    CHECK_THAT(WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0);
    CloseHandle(thread);
}

} // namespace

void RunPlain(const Situation&) {
    CheckRegisteredCycles();
}

void RunClassObjects(const Situation& situation) {
    CheckCycles([&] {
        UseLibrary(situation.library);
        CHECK_THAT(GetModuleHandleW(L"Tarnwick.dll") == nullptr);
    });
}

void RunUnregistered(const Situation& situation) {
    CLSID classId;
    CHECK_THAT(CLSIDFromProgID(L"Corvane.PolicyResults", &classId) == CO_E_CLASSSTRING);
    RunClassObjects(situation);
}

void RunOlderThreads(const Situation& situation) {
    CheckCycles([&] {
        HANDLE threads[3];
        for (HANDLE& thread : threads) {
            thread = CreateThread(nullptr, 0, UseInApartment, nullptr, CREATE_SUSPENDED, nullptr);
            CHECK_THAT(thread != nullptr);
        }
        const HMODULE library = LoadLibraryW(situation.library);
        CHECK_THAT(library != nullptr);
        for (HANDLE thread : threads) {
            CHECK_THAT(ResumeThread(thread) == 1);
            Join(thread);
        }
        CHECK_THAT(FreeLibrary(library));
    });
}

void RunSmallStack(const Situation& situation) {
    CheckCycles([&] {
        const HMODULE library = LoadLibraryW(situation.library);
        CHECK_THAT(library != nullptr);
        Join(CreateThread(nullptr, 64 * 1024, UseInApartment, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION,
                          nullptr));
        CHECK_THAT(FreeLibrary(library));
    });
}

#ifdef CLIENT_KEEPS_STACK_OF_4_BYTES

namespace {

/// Calls a function with the stack pointer `offset` bytes below a multiple of 16.
void CallWithStack(void (*function)(), unsigned offset) {
    __asm__ volatile("movl %%esp, %%esi\n\t"
                     "andl $-16, %%esp\n\t"
                     "subl %1, %%esp\n\t"
                     "call *%0\n\t"
                     "movl %%esi, %%esp"
                     :
                     : "r"(function), "r"(offset)
                     : "esi", "eax", "ecx", "edx", "memory", "cc");
}

} // namespace

void RunStackOf4Bytes(const Situation&) {
    CHECK_THAT(CoInitialize(nullptr) == S_OK);
    CheckCycles([] {
        for (const unsigned offset : {0u, 4u, 8u, 12u})
            CallWithStack(UseRegisteredClasses, offset);
        UnloadRegistered();
    });
    CoUninitialize();
}

#else

void RunStackOf4Bytes(const Situation&) {
    Fail("this host keeps the stack aligned", __FILE__, __LINE__);
}

#endif

void RunUnmaskedFloatingPoint(const Situation&) {
    constexpr std::uint16_t unmasked = 0x1332;
    constexpr std::uint32_t unmaskedVectors = 0x1900;
    CHECK_THAT(CoInitialize(nullptr) == S_OK);
    CheckCycles([&] {
        __asm__ volatile("fldcw %0\n\tldmxcsr %1" : : "m"(unmasked), "m"(unmaskedVectors));
        UseRegisteredOnce();
        std::uint16_t control = 0;
        std::uint32_t vectors = 0;
        __asm__ volatile("fnstcw %0\n\tstmxcsr %1" : "=m"(control), "=m"(vectors));
        CHECK_THAT((control & ~0x40) == unmasked);         // the processor always sets bit 6
        CHECK_THAT((vectors & 0xFFC0) == unmaskedVectors); // the low bits are status flags
    });
    CoUninitialize();
}

void RunDecimalComma(const Situation&) {
    CHECK_THAT(std::setlocale(LC_ALL, "German_Germany.1252") != nullptr);
    CHECK_THAT(std::strcmp(std::localeconv()->decimal_point, ",") == 0);
    CHECK_THAT(SetThreadLocale(MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT)));
    CheckRegisteredCycles();
}

void RunTurkish(const Situation&) {
    CHECK_THAT(std::setlocale(LC_ALL, "Turkish_Turkey.1254") != nullptr);
    CHECK_THAT(SetThreadLocale(MAKELCID(MAKELANGID(LANG_TURKISH, SUBLANG_TURKISH_TURKEY), SORT_DEFAULT)));
    CheckRegisteredCycles();
}
