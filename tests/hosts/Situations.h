#pragma once

/// What the command line gives a situation.
struct Situation {
    const wchar_t* library;  ///< path
    const wchar_t* argument; ///< path of the plug-in, the shared runtime or the log file
};

// Registered, in an apartment, unless something else is said.

void RunPlain(const Situation&);
/// LoadLibrary and DllGetClassObject, without an apartment.
void RunClassObjects(const Situation& situation);
/// The same where nothing is registered.
void RunUnregistered(const Situation& situation);
/// Threads that the library finds when it is loaded.
void RunOlderThreads(const Situation& situation);
/// A thread with a stack of 64 KB.
void RunSmallStack(const Situation& situation);
/// Callers that align the stack to 4 bytes only.
void RunStackOf4Bytes(const Situation& situation);
/// Invalid operation, division by zero and overflow raise exceptions.
void RunUnmaskedFloatingPoint(const Situation& situation);
/// Locales of the C library and of the thread.
void RunDecimalComma(const Situation& situation);
void RunTurkish(const Situation& situation);

// A plug-in brings a shared runtime of the compiler into the process.

/// Loaded before the library, and unloaded while the library is still there.
void RunPluginBefore(const Situation& situation);
/// Loaded when the library has thrown already, and unloaded before it.
void RunPluginAfter(const Situation& situation);
/// The plug-in is the client.
void RunPluginUses(const Situation& situation);
/// The shared runtime alone: the library holds no reference to it.
void RunRuntimeReleased(const Situation& situation);

// The log, in a registry that is the test's own.

/// The log's file gets the failing calls' lines.
void RunLogWritten(const Situation& situation);
/// The log's file cannot be reached; the client does not notice.
void RunLogUnreachable(const Situation& situation);
