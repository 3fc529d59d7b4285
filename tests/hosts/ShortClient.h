#pragma once

// A short client, compiled into each host with the host's own runtime: it creates objects, fills them, fails,
// reads the description, writes and reads XML, and unloads the library. In between the host throws exceptions
// of its own.

/// Throws an exception of the host and catches it.
void ThrowAndCatch();

/// Loads the library and takes its objects from its class objects, without the registry.
void UseLibrary(const wchar_t* path);

/// Creates registered objects, in an apartment of the calling thread. The library stays loaded.
void UseRegisteredClasses();

/// Unloads the library that UseRegisteredClasses left.
void UnloadRegistered();
