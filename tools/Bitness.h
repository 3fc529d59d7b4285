#pragma once

#include <optional>
#include <string>

#include <windows.h>

/// A library runs only in programs of its own bitness, and 64-bit Windows has a registry for each.
enum class Bitness { Bits32, Bits64 };

inline constexpr Bitness OwnBitness = sizeof(void*) == 8 ? Bitness::Bits64 : Bitness::Bits32;

/// "32-bit"
const wchar_t* Name(Bitness bitness);
Bitness Other(Bitness bitness);
/// Whether the system runs programs of both.
bool SystemHasBoth();
REGSAM RegistryView(Bitness bitness);

/// From the file's header; nothing if it is not a program or library of one of the two.
std::optional<Bitness> BitnessOf(const std::wstring& path);
/// The first three components of a file's version; empty if it has none.
std::wstring VersionOf(const std::wstring& path);
