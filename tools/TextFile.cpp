#include "TextFile.h"

#include "Console.h"
#include "SystemError.h"

#include "common/text/TextEncoding.h"

#include <algorithm>

namespace {

[[noreturn]] void Fail(const std::wstring& path, DWORD error) {
    throw ToolError(path + L": " + ErrorText(HRESULT_FROM_WIN32(error)));
}

/// The parser's offsets have 32 bits, and both the bytes and the characters must fit in memory.
constexpr LONGLONG LongestFile = 512LL * 1024 * 1024;
constexpr DWORD Piece = 4 * 1024 * 1024;

} // namespace

Handle OpenToRead(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

TextFile ReadTextFile(const std::wstring& path) {
    const Handle file = OpenToRead(path);
    if (!file)
        Fail(path, GetLastError());
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file.get(), &size))
        Fail(path, GetLastError());
    if (size.QuadPart > LongestFile)
        Fail(path, ERROR_FILE_TOO_LARGE);
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t done = 0;
    while (done < bytes.size()) {
        DWORD read = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, Piece));
        if (!ReadFile(file.get(), bytes.data() + done, wanted, &read, nullptr))
            Fail(path, GetLastError());
        if (read == 0)
            break;
        done += read;
        if (bytes.size() > Piece)
            Console::Progress(L"Reading: " + std::to_wstring(done * 100ULL / bytes.size()) + L" %");
    }
    bytes.resize(done);
    Console::EndProgress();
    return {TextEncoding::Decode(bytes), done};
}
