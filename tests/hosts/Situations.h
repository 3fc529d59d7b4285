#pragma once

/// Arguments of a situation, from the command line.
struct Situation {
    const wchar_t* library;  ///< path
    const wchar_t* argument; ///< path of the plug-in, the shared runtime or the log file
};

// The classes are registered and the thread is in an apartment, unless stated otherwise.

void RunPlain(const Situation&);
/// LoadLibrary and DllGetClassObject, without an apartment.
void RunClassObjects(const Situation& situation);
/// The same with nothing registered.
void RunUnregistered(const Situation& situation);
/// Threads that exist before the library is loaded.
void RunOlderThreads(const Situation& situation);
/// A thread with a stack of 64 KB.
void RunSmallStack(const Situation& situation);
/// Callers that align the stack only to 4 bytes.
void RunStackOf4Bytes(const Situation& situation);
/// Unmasked floating-point exceptions: invalid operation, division by zero, overflow.
void RunUnmaskedFloatingPoint(const Situation& situation);
/// Locales with a decimal comma, in the C library and in the thread.
void RunDecimalComma(const Situation& situation);
void RunTurkish(const Situation& situation);

// A plug-in loads the compiler's shared runtime into the process.

/// Loaded before the library, unloaded while the library is still loaded.
void RunPluginBefore(const Situation& situation);
/// Loaded after the library's first exception, unloaded before the library.
void RunPluginAfter(const Situation& situation);
/// The plug-in is the client.
void RunPluginUses(const Situation& situation);
/// Only the shared runtime is loaded: the library must hold no reference to it.
void RunRuntimeReleased(const Situation& situation);

// The log, configured in a private registry.

/// The log file contains the failing calls.
void RunLogWritten(const Situation& situation);
/// The log file is unreachable; the client does not notice.
void RunLogUnreachable(const Situation& situation);
