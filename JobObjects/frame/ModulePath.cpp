#include "ModulePath.h"

#include "ServerModule.h"
#include "common/com/ErrorReporting.h"

std::wstring OwnModulePath() {
    constexpr DWORD maxPath = 260;
    wchar_t buffer[maxPath];
    const DWORD length = GetModuleFileNameW(OwnModule().Instance(), buffer, maxPath);
    if (length == 0)
        throw ComError(HRESULT_FROM_WIN32(GetLastError()));
    if (length == maxPath)
        throw ComError(HRESULT_FROM_WIN32(ERROR_INSUFFICIENT_BUFFER));
    return std::wstring(buffer, length);
}
