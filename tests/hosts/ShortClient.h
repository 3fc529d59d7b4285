#pragma once

// A short client, compiled into each host with the host's runtime. It creates and fills objects, makes a call
// fail and reads the description, writes and reads XML, and unloads the library. In between, the host throws
// its own exceptions.

/// Throws and catches an exception in the host.
void ThrowAndCatch();

/// Loads the library and creates objects through its class objects, without the registry.
void UseLibrary(const wchar_t* path);

/// Creates registered objects in an apartment of the calling thread. Leaves the library loaded.
void UseRegisteredClasses();

/// Unloads the library after UseRegisteredClasses.
void UnloadRegistered();
