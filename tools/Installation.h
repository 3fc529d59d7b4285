#pragma once

#include "Bitness.h"

#include <string>
#include <vector>

#include <windows.h>

/// How a class is registered.
struct ClassRegistration {
    std::wstring name;
    bool hasProgId;    ///< scripts and the library itself create objects by ProgID
    std::wstring file; ///< empty if the class is not registered
    std::wstring threadingModel;
};
/// All classes, as programs of that bitness see them.
std::vector<ClassRegistration> RegisteredClasses(Bitness bitness);
/// The file of the first class that is registered for programs of that bitness; empty if none is.
std::wstring RegisteredModule(Bitness bitness = OwnBitness);

/// The folder of a file, with the last separator.
std::wstring FolderOf(const std::wstring& file);
std::wstring FullPath(const std::wstring& path);
/// The path of the catalogue beside a module.
std::wstring CatalogueBeside(const std::wstring& module);
/// The path of this program.
std::wstring ToolPath();
/// The path of the library that this process has loaded; empty if it has loaded none.
std::wstring LoadedLibrary();
bool FileExists(const std::wstring& path);
