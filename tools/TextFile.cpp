#include "TextFile.h"

#include "Console.h"
#include "Files.h"
#include "SystemError.h"

#include <algorithm>

namespace {

/// The parser's offsets have 32 bits, and both the bytes and the characters must fit in memory.
constexpr std::size_t LongestFile = std::size_t{512} * 1024 * 1024;
constexpr DWORD Piece = 4 * 1024 * 1024;

[[noreturn]] void Fail(const std::wstring& path, DWORD error) {
    throw ToolError(FileLabel(path) + L": " + ErrorText(HRESULT_FROM_WIN32(error)));
}

[[noreturn]] void FailToOpen(const std::wstring& path) {
    const DWORD error = GetLastError();
    if (HasWildcard(path))
        throw ToolError(path + L": no file matches");
    if (IsFolder(path))
        throw ToolError(path + L": this is a folder; for its files write " + path + L"\\*.xml");
    Fail(path, error);
}

/// Reads to the end. `size` is the expected size, 0 if unknown.
std::string ReadAll(HANDLE file, const std::wstring& path, std::size_t size) {
    std::string bytes(size, '\0');
    std::size_t done = 0;
    for (;;) {
        if (done == bytes.size())
            bytes.resize(std::max<std::size_t>(done + Piece, done + done / 2));
        DWORD read = 0;
        const auto wanted = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, Piece));
        // The end of a pipe is an error; the end of a file is not.
        if (!ReadFile(file, bytes.data() + done, wanted, &read, nullptr) &&
            GetLastError() != ERROR_BROKEN_PIPE)
            Fail(path, GetLastError());
        if (read == 0)
            break;
        done += read;
        if (done > LongestFile)
            Fail(path, ERROR_FILE_TOO_LARGE);
        if (size > Piece)
            Console::Progress(L"Reading", done, size);
    }
    bytes.resize(done);
    return bytes;
}

std::string ReadBytes(const std::wstring& path) {
    if (path == StandardInput)
        return ReadAll(GetStdHandle(STD_INPUT_HANDLE), path, 0);
    const Handle file = OpenToRead(path);
    if (!file)
        FailToOpen(path);
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file.get(), &size))
        Fail(path, GetLastError());
    if (size.QuadPart > static_cast<LONGLONG>(LongestFile))
        Fail(path, ERROR_FILE_TOO_LARGE);
    // One more byte, so that the end of the file does not enlarge the buffer.
    return ReadAll(file.get(), path, static_cast<std::size_t>(size.QuadPart) + 1);
}

} // namespace

Handle OpenToRead(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

bool IsFolder(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

std::wstring FileLabel(const std::wstring& path) {
    return path == StandardInput ? L"standard input" : path;
}

TextFile ReadTextFile(const std::wstring& path) {
    std::string bytes = ReadBytes(path);
    TextFile file;
    file.bytes = bytes.size();
    const bool isLittleEndian = bytes.size() > 1 && bytes[0] != 0 && bytes[1] == 0;
    const bool isBigEndian = bytes.size() > 1 && bytes[0] == 0 && bytes[1] != 0;
    file.isMarkMissing = isLittleEndian || isBigEndian;
    if (file.isMarkMissing)
        bytes.insert(0, isLittleEndian ? "\xFF\xFE" : "\xFE\xFF");
    file.encoding = bytes.starts_with("\xFF\xFE")   ? L"UTF-16, little-endian"
                    : bytes.starts_with("\xFE\xFF") ? L"UTF-16, big-endian"
                                                    : L"UTF-8";
    file.text = TextEncoding::Decode(bytes, &file.malformed);
    Console::EndProgress();
    return file;
}
