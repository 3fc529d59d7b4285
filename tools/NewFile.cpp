#include "NewFile.h"

#include "Console.h"
#include "SystemError.h"
#include "TextFile.h"

namespace {

[[noreturn]] void Fail(const std::wstring& path) {
    throw ToolError(path + L": " + ErrorText(HRESULT_FROM_WIN32(GetLastError())));
}

} // namespace

void WriteNewFile(const std::wstring& path, std::string_view bytes) {
    const std::wstring newPath = path + L".new";
    {
        HANDLE opened = CreateFileW(newPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
        if (opened == INVALID_HANDLE_VALUE)
            Fail(newPath);
        const Handle file(opened);
        DWORD written = 0;
        if (!WriteFile(opened, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) ||
            !FlushFileBuffers(opened))
            Fail(newPath);
        if (written < bytes.size())
            throw ToolError(newPath + L": the disk is full");
    }
    if (!MoveFileExW(newPath.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        Fail(path);
}
