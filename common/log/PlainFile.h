#pragma once

#include "FileHandle.h"

#include <string>
#include <string_view>

#include <windows.h>

/// Opens a file for writing with CreateFile's sharing and creation values. Refuses a symlink and a file with
/// a second hard link: anyone with write access to the folder could otherwise redirect the host's writes to
/// another file. Links among the path's folders are allowed.
///
/// Null on failure, with the last error set: ERROR_CANT_ACCESS_FILE for a link. Throws std::bad_alloc.
FileHandle OpenPlainFile(std::wstring_view path, DWORD sharing, DWORD creation);

/// A sentence for the last error of OpenPlainFile.
std::wstring PlainFileProblem(DWORD reason);
