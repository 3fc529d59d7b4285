#include "TextFile.h"

#include "Console.h"
#include "Files.h"
#include "SystemError.h"

#include <algorithm>

namespace {

/// The parser's offsets have 32 bits, and both the bytes and the characters must fit in memory.
constexpr std::size_t LongestFile = std::size_t{512} * 1024 * 1024;
constexpr std::size_t Piece = std::size_t{4} * 1024 * 1024;

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

std::string ReadBytes(const std::wstring& path) {
    InputFile file(path);
    if (file.Size() > LongestFile)
        Fail(path, ERROR_FILE_TOO_LARGE);
    const auto size = static_cast<std::size_t>(file.Size());
    // One more byte, so that the end of the file does not enlarge the buffer.
    std::string bytes(size + 1, '\0');
    std::size_t done = 0;
    while (const std::size_t read = file.Read(bytes.data() + done, std::min(bytes.size() - done, Piece))) {
        done += read;
        if (done > LongestFile)
            Fail(path, ERROR_FILE_TOO_LARGE);
        if (done == bytes.size())
            bytes.resize(std::max(done + Piece, done + done / 2));
        if (size > Piece)
            Console::Progress(L"Reading", done, size);
    }
    bytes.resize(done);
    return bytes;
}

} // namespace

Handle OpenToRead(const std::wstring& path) {
    HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return Handle(file == INVALID_HANDLE_VALUE ? nullptr : file);
}

InputFile::InputFile(const std::wstring& path) : m_path(path), m_source(GetStdHandle(STD_INPUT_HANDLE)) {
    if (path == StandardInput)
        return;
    m_file = OpenToRead(path);
    m_source = m_file.get();
    if (!m_file)
        FailToOpen(path);
    LARGE_INTEGER size;
    if (!GetFileSizeEx(m_source, &size))
        Fail(path, GetLastError());
    m_size = static_cast<std::uint64_t>(size.QuadPart);
}

std::size_t InputFile::Read(char* to, std::size_t room) {
    DWORD read = 0;
    // The end of a pipe is an error; the end of a file is not.
    if (!ReadFile(m_source, to, static_cast<DWORD>(room), &read, nullptr) &&
        GetLastError() != ERROR_BROKEN_PIPE)
        Fail(m_path, GetLastError());
    return read;
}

FileEncoding EncodingOf(std::string_view beginning) {
    constexpr std::string_view utf8 = "\xEF\xBB\xBF", littleEndian = "\xFF\xFE", bigEndian = "\xFE\xFF";
    const bool hasTwo = beginning.size() > 1;
    const bool isMarkedLittle = beginning.starts_with(littleEndian);
    const bool isMarkedBig = beginning.starts_with(bigEndian);
    if (isMarkedLittle || (hasTwo && beginning[0] != 0 && beginning[1] == 0))
        return {L"UTF-16, little-endian", littleEndian, isMarkedLittle};
    if (isMarkedBig || (hasTwo && beginning[0] == 0 && beginning[1] != 0))
        return {L"UTF-16, big-endian", bigEndian, isMarkedBig};
    return {L"UTF-8", utf8, beginning.starts_with(utf8)};
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
    const FileEncoding encoding = EncodingOf(bytes);
    file.encoding = encoding.name;
    file.isMarkMissing = !encoding.hasMark && encoding.mark.size() == 2;
    if (file.isMarkMissing)
        bytes.insert(0, encoding.mark);
    file.text = TextEncoding::Decode(bytes, &file.malformed);
    Console::EndProgress();
    return file;
}
