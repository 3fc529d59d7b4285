#pragma once

#include "FaultInjector.h"

#include <cstdio>
#include <type_traits>

// Replacements for imported functions in a library's import table.

template<std::size_t Size>
struct ImportName {
    // NOLINTNEXTLINE(google-explicit-constructor): template arguments need the conversion
    consteval ImportName(const char (&name)[Size]) {
        for (std::size_t i = 0; i < Size; ++i)
            text[i] = name[i];
    }
    char text[Size];
};

/// An import and its replacement.
struct Import {
    const char* name;
    void* replacement;
    void (*setOriginal)(void* address);
    Failure failure;
    const char* reason;
};

namespace ImportHooks {

/// Calls the function or simulates its failure.
template<class Function, class... Arguments>
auto CallOrFail(const char* name, const Failure& failure, Function original, Arguments... arguments) {
    using Result = decltype(original(arguments...));
    if (!FaultInjector::Strikes(name, failure))
        return original(arguments...);
    if (failure.afterTheCall)
        original(arguments...);
    if (failure.lastError)
        SetLastError(failure.lastError);
    if constexpr (std::is_pointer_v<Result>)
        return reinterpret_cast<Result>(failure.value);
    else
        return static_cast<Result>(failure.value);
}

template<ImportName name, class Function>
struct Hook;

template<ImportName name, class Result, class... Arguments>
struct Hook<name, Result(__stdcall*)(Arguments...)> {
    using Function = Result(__stdcall*)(Arguments...);
    static inline Failure failure{};
    static inline Function original = nullptr;
    static Result __stdcall Replacement(Arguments... arguments) {
        return CallOrFail(name.text, failure, original, arguments...);
    }
    static void SetOriginal(void* address) { original = reinterpret_cast<Function>(address); }
};

/// Reports an unexpected call and ends the program. Never returns, so the arguments do not matter.
template<ImportName name>
[[noreturn]] void NeverCalled() {
    char text[200];
    FaultInjector::Describe(text, sizeof(text));
    std::fprintf(stderr, "unexpected call of %s: %s\n", name.text, text);
    std::fflush(stderr);
    TerminateProcess(GetCurrentProcess(), 253);
    for (;;)
        Sleep(INFINITE);
}

} // namespace ImportHooks

/// A function whose calls can fail.
template<ImportName name, class Function>
Import Fails(Failure failure) {
    using Hook = ImportHooks::Hook<name, Function>;
    Hook::failure = failure;
    return {name.text, reinterpret_cast<void*>(&Hook::Replacement), &Hook::SetOriginal, failure, ""};
}

/// A function that is not replaced.
inline Import CannotFail(const char* name, const char* reason) {
    return {name, nullptr, nullptr, {}, reason};
}

/// A function whose call ends the program.
template<ImportName name>
Import NotCalled(const char* reason) {
    return {name.text, reinterpret_cast<void*>(&ImportHooks::NeverCalled<name>), nullptr, {}, reason};
}
