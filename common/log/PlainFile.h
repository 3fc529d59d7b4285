#pragma once

#include "FileHandle.h"

#include <string>
#include <string_view>

#include <windows.h>

/// Opens a file for writing, with the sharing and creation that CreateFile knows. Refuses a file that is a
/// symbolic link or has a second name: whoever may write to its folder could otherwise make the host write to
/// any file that the host may write to. The folders of the path are the caller's choice.
///
/// Not open on failure; the reason is then the last error, ERROR_CANT_ACCESS_FILE for a link. Throws
/// std::bad_alloc.
FileHandle OpenPlainFile(std::wstring_view path, DWORD sharing, DWORD creation);

/// A sentence for the reason that the above leaves as the last error.
std::wstring PlainFileProblem(DWORD reason);
