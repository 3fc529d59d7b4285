#include "Unwinding.h"

#ifdef RUNTIME_UNWINDS_BY_DWARF

// Finds a function's unwind table for the runtime's unwinder.
//
// The runtime's own version searches registered tables. Start-up code registers them with a shared runtime
// (libgcc_s_dw2-1.dll) if the process has one; the static unwinder then finds nothing and ends the process at
// the first exception. This version reads the library's own section: it needs no registration, lock or
// memory.

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>

namespace {

/// An entry of .eh_frame: the description of a function (FDE), or a common part (CIE) of several
/// descriptions.
struct Record {
    std::uint32_t length;       // of the rest; 0: padding
    std::uint32_t commonOffset; // from this field back to the common part; 0 in a common part
    std::uint32_t start;        // of the function, see Encoding
    std::uint32_t size;         // of the function, in bytes
};

/// Encoding of an address. Clang uses the first, GCC the second.
enum Encoding : std::uint8_t { absolute = 0x00, relativeToField = 0x1B, unknown = 0xFF };

void SkipNumber(const std::uint8_t*& position) noexcept {
    while ((*position++ & 0x80) != 0) {
    }
}

/// The encoding of start, from the description's common part.
Encoding StartEncoding(const Record& description) noexcept {
    const auto* position = reinterpret_cast<const std::uint8_t*>(&description.commonOffset) -
                           description.commonOffset + offsetof(Record, start);
    const std::uint8_t version = *position++;
    const char* letters = reinterpret_cast<const char*>(position);
    position += std::strlen(letters) + 1;
    if (*letters++ != 'z')
        return letters[-1] == '\0' ? absolute : unknown;
    SkipNumber(position); // code alignment
    SkipNumber(position); // data alignment
    if (version == 1)     // return address register
        ++position;
    else
        SkipNumber(position);
    SkipNumber(position); // length of the data that the letters describe
    for (; *letters != '\0'; ++letters) {
        if (*letters == 'R')
            return static_cast<Encoding>(*position);
        if (*letters == 'P') // handler: encoding and address, which has 4 bytes in both encodings
            position += 5;
        else if (*letters == 'L')
            ++position;
        else
            return unknown;
    }
    return absolute;
}

/// The start of the described function if it contains the address, else 0. Reads the common part only if the
/// address matches in one of the encodings.
std::uintptr_t StartIfContains(const Record& description, std::uintptr_t address) noexcept {
    const std::uintptr_t relative = reinterpret_cast<std::uintptr_t>(&description.start) + description.start;
    if (address - relative < description.size && StartEncoding(description) == relativeToField)
        return relative;
    if (address - description.start < description.size && StartEncoding(description) == absolute)
        return description.start;
    return 0;
}

struct Section {
    const std::uint8_t* begin;
    const std::uint8_t* end;
};

} // namespace

// Names of the linker and the runtime.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
extern "C" {

extern const std::uint8_t __ImageBase[]; // the library's first byte
extern const std::uint8_t runtimeFramesAnchor[];
// An address inside the section, to find it by: an image may truncate section names.
__asm__(".section .eh_frame,\"dr\"\n"
        "_runtimeFramesAnchor:\n"
        ".text\n");
}

namespace {

Section FrameSection() noexcept {
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(__ImageBase);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(__ImageBase + dos->e_lfanew);
    const auto anchor = static_cast<std::uint32_t>(runtimeFramesAnchor - __ImageBase);
    const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(headers);
    for (unsigned i = 0; i < headers->FileHeader.NumberOfSections; ++i, ++section)
        if (anchor - section->VirtualAddress < section->Misc.VirtualSize)
            return {__ImageBase + section->VirtualAddress,
                    __ImageBase + section->VirtualAddress + section->Misc.VirtualSize};
    return {};
}

const Record* Search(std::uintptr_t address) noexcept {
    const Section section = FrameSection();
    for (const std::uint8_t* position = section.begin; section.end - position >= 16;) {
        const auto* const record = reinterpret_cast<const Record*>(position);
        if (record->length != 0 && record->commonOffset != 0 && StartIfContains(*record, address) != 0)
            return record;
        position += sizeof(record->length) + record->length;
    }
    return nullptr;
}

/// Recent results by hash of the address: an exception asks twice for each frame, and the next exception
/// often leaves the same functions. A collision replaces the entry.
constinit std::array<std::atomic<const Record*>, 256> found{};

} // namespace

extern "C" {

/// Second result for the unwinder. text and data are for encodings that do not occur here.
struct FunctionBases {
    const void* text;
    const void* data;
    std::uintptr_t function;
};

const Record* _Unwind_Find_FDE(const void* address, FunctionBases* bases) noexcept {
    const auto wanted = reinterpret_cast<std::uintptr_t>(address);
    std::atomic<const Record*>& place = found[(wanted >> 4 ^ wanted) % found.size()];
    const Record* record = place.load(std::memory_order_relaxed);
    std::uintptr_t start = record ? StartIfContains(*record, wanted) : 0;
    if (start == 0) {
        record = Search(wanted);
        if (!record)
            return nullptr;
        start = StartIfContains(*record, wanted);
        place.store(record, std::memory_order_relaxed);
    }
    *bases = {nullptr, nullptr, start};
    return record;
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)

#endif
