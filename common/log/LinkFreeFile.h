#pragma once

#include "../QxTHandle.h"

#include <string_view>

#include <windows.h>

/// Opens a file for writing, with the sharing and creation that CreateFile knows. Refuses a path that leads
/// through a link, be it a folder or the file itself, symbolic, a junction or a second name: who may write to
/// one of the folders could have the host write wherever the host may. Refuses a folder, too, of which the
/// caller may not learn whether it is a link.
///
/// Not open on failure; the reason is then the last error, ERROR_CANT_ACCESS_FILE for a link. Throws
/// std::bad_alloc.
QxKernelHandle OpenFileWithoutLinks(std::wstring_view path, DWORD sharing, DWORD creation);
