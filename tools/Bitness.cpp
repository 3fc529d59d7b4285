#include "Bitness.h"

#include "TextFile.h"

#include <string>

const wchar_t* Name(Bitness bitness) {
    return bitness == Bitness::Bits64 ? L"64-bit" : L"32-bit";
}

Bitness Other(Bitness bitness) {
    return bitness == Bitness::Bits64 ? Bitness::Bits32 : Bitness::Bits64;
}

bool SystemHasBoth() {
    BOOL isEmulated = FALSE;
    return OwnBitness == Bitness::Bits64 || (IsWow64Process(GetCurrentProcess(), &isEmulated) && isEmulated);
}

REGSAM RegistryView(Bitness bitness) {
    return bitness == Bitness::Bits64 ? KEY_WOW64_64KEY : KEY_WOW64_32KEY;
}

std::optional<Bitness> BitnessOf(const std::wstring& path) {
    const Handle file = OpenToRead(path);
    IMAGE_DOS_HEADER dos{};
    struct {
        DWORD signature;
        IMAGE_FILE_HEADER header;
    } nt{};
    DWORD read = 0;
    if (!file || !ReadFile(file.get(), &dos, sizeof(dos), &read, nullptr) || read != sizeof(dos) ||
        dos.e_magic != IMAGE_DOS_SIGNATURE ||
        SetFilePointer(file.get(), dos.e_lfanew, nullptr, FILE_BEGIN) == INVALID_SET_FILE_POINTER ||
        !ReadFile(file.get(), &nt, sizeof(nt), &read, nullptr) || read != sizeof(nt) ||
        nt.signature != IMAGE_NT_SIGNATURE)
        return std::nullopt;
    switch (nt.header.Machine) {
    case IMAGE_FILE_MACHINE_I386:
        return Bitness::Bits32;
    case IMAGE_FILE_MACHINE_AMD64:
        return Bitness::Bits64;
    default:
        return std::nullopt;
    }
}

std::wstring VersionOf(const std::wstring& path) {
    DWORD unused = 0;
    std::string block(GetFileVersionInfoSizeW(path.c_str(), &unused), '\0');
    VS_FIXEDFILEINFO* info = nullptr;
    UINT size = 0;
    if (block.empty() ||
        !GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) ||
        !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&info), &size))
        return {};
    return std::to_wstring(HIWORD(info->dwFileVersionMS)) + L"." +
           std::to_wstring(LOWORD(info->dwFileVersionMS)) + L"." +
           std::to_wstring(HIWORD(info->dwFileVersionLS));
}
