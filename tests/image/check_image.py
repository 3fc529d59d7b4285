#!/usr/bin/env python3
"""Checks how the library is linked: check_image.py LIBRARY STRIP_PROGRAM

Prints the image's properties, then each violation of the rules below on a line. Returns 1 if there is any.
"""
import os
import struct
import subprocess
import sys
import tempfile

MAX_SIZE = 700_000  # bytes without symbols
DLL_FLAGS = {"loads at any address": 0x0040, "data is not executable": 0x0100}
DLL_FLAGS_32 = {"no exception handlers": 0x0400}
DLL_FLAGS_64 = {"loads above 4 GB": 0x0020}
RELOCATIONS_STRIPPED = 0x0001
EXECUTE, WRITE = 0x20000000, 0x80000000
IMPORT_DIRECTORY, EXCEPTION_DIRECTORY, RELOCATION_DIRECTORY = 1, 3, 5
# Encodings of a function's start in the unwind tables that runtime/RuntimeFrames.cpp supports.
ABSOLUTE, RELATIVE_TO_FIELD = 0x00, 0x1B
EXPORTS = ["DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"]
# DLLs of every Windows. The C runtime is the system's msvcrt.dll, not a compiler's.
LIBRARIES = ["advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll"]


class Image:
    """The headers of a PE file."""

    def __init__(self, data):
        self.data = data
        header = self.number("<I", 0x3C)
        if data[:2] != b"MZ" or data[header:header + 4] != b"PE\0\0":
            raise ValueError("not a PE file")
        machine, count = struct.unpack_from("<HH", data, header + 4)
        optional_size, self.characteristics = struct.unpack_from("<HH", data, header + 20)
        optional = header + 24
        kind = machine, self.number("<H", optional)
        if kind not in ((0x14C, 0x10B), (0x8664, 0x20B)):
            raise ValueError("not a file for Windows on 32-bit or 64-bit x86")
        self.is_64_bit = machine == 0x8664
        self.base = self.number("<Q", optional + 24) if self.is_64_bit else self.number("<I", optional + 28)
        self.dll_flags = self.number("<H", optional + 70)
        directories = optional + (108 if self.is_64_bit else 92)
        self.directories = [struct.unpack_from("<II", data, directories + 4 + 8 * i)
                            for i in range(self.number("<I", directories))]
        symbols, symbol_count = struct.unpack_from("<II", data, header + 12)
        self.long_names = symbols + 18 * symbol_count
        self.sections = [self.section(optional + optional_size + 40 * i) for i in range(count)]

    def number(self, form, offset):
        return struct.unpack_from(form, self.data, offset)[0]

    def section(self, offset):
        name = self.data[offset:offset + 8].rstrip(b"\0").decode()
        if name.startswith("/"): # an offset into the table of long names
            start = self.long_names + int(name[1:])
            name = self.data[start:self.data.index(b"\0", start)].decode()
        size, address, raw_size, raw = struct.unpack_from("<IIII", self.data, offset + 8)
        return name, address, max(size, raw_size), raw, self.number("<I", offset + 36)

    def offset(self, address):
        for _, start, size, raw, _ in self.sections:
            if start <= address < start + size:
                return address - start + raw
        raise ValueError(f"address {address:#x} is in no section")

    def text(self, address):
        start = self.offset(address)
        return self.data[start:self.data.index(b"\0", start)].decode()

    def libraries(self):
        descriptor = self.offset(self.directories[IMPORT_DIRECTORY][0])
        while name := self.number("<I", descriptor + 12):
            yield self.text(name).lower()
            descriptor += 20

    def exports(self):
        directory = self.offset(self.directories[0][0])
        names = self.offset(self.number("<I", directory + 32))
        return [self.text(self.number("<I", names + 4 * i)) for i in range(self.number("<I", directory + 24))]


class Frames:
    """The unwind tables of a 32-bit image."""

    def __init__(self, image):
        self.image = image
        self.start, size, self.raw = next((start, size, raw) for name, start, size, raw, _ in image.sections
                                          if name == ".eh_frame")
        self.end = self.raw + size

    def functions(self):
        """Start, size and encoding of each described function. Raises ValueError for an unknown format."""
        offset = self.raw
        while offset + 8 <= self.end:
            length, common = struct.unpack_from("<II", self.image.data, offset)
            if length and common:
                value, size = struct.unpack_from("<iI", self.image.data, offset + 8)
                encoding = self.encoding(offset + 4 - common)
                field = offset + 8 - self.raw + self.start
                value += field if encoding == RELATIVE_TO_FIELD else -self.image.base
                yield value, size, encoding
            offset += 4 + length
        if offset > self.end:
            raise ValueError(f"unwind tables end {offset - self.end} bytes after their section")

    def encoding(self, offset):
        data = self.image.data
        length, zero, version = struct.unpack_from("<IIB", data, offset)
        letters = data[offset + 9:data.index(b"\0", offset + 9)].decode()
        if zero or version != 1 or letters not in ("", "zR", "zPR", "zPLR"):
            raise ValueError(f"unwind table of version {version} with the letters {letters!r}")
        # Alignments, return address register and length, one byte each, precede these encodings of handler, language
        # data and start.
        values = data[offset + 9 + len(letters) + 1 + 4:offset + 4 + length]
        return values[{"zR": 0, "zPR": 5, "zPLR": 6}[letters]] if letters else ABSOLUTE


def system_frames(image):
    """Start, size and encoding of each function in the system's unwind table of a 64-bit image."""
    address, size = image.directories[EXCEPTION_DIRECTORY]
    offset = image.offset(address)
    for start, end, _ in struct.iter_unpack("<III", image.data[offset:offset + size]):
        yield start, end - start, ABSOLUTE


def frame_findings(image):
    text, text_size = next((start, size) for name, start, size, _, _ in image.sections if name == ".text")
    functions = list(system_frames(image) if image.is_64_bit else Frames(image).functions())
    print(f"{len(functions)} functions in the unwind tables")
    if len(functions) < 1000:
        yield f"the unwind tables describe only {len(functions)} functions"
    for start, size, encoding in functions:
        if encoding not in (ABSOLUTE, RELATIVE_TO_FIELD):
            yield f"unwind table with the encoding {encoding:#04x}"
        elif not text <= start <= start + size <= text + text_size:
            yield f"unwind table of a function outside the code, at {start:#x}"


def findings(image, size):
    for what, flag in (DLL_FLAGS | (DLL_FLAGS_64 if image.is_64_bit else DLL_FLAGS_32)).items():
        if not image.dll_flags & flag:
            yield f"flag {flag:#06x} is not set: {what}"
    if image.characteristics & RELOCATIONS_STRIPPED or not image.directories[RELOCATION_DIRECTORY][1]:
        yield "no relocations: it cannot load at another address"
    for name, _, _, _, flags in image.sections:
        if flags & EXECUTE and flags & WRITE:
            yield f"section {name} is writable and executable"
        if flags & EXECUTE and name != ".text":
            yield f"section {name} is executable"
    for name in sorted(set(image.libraries()) - set(LIBRARIES)):
        yield f"imports from {name}"
    if image.exports() != EXPORTS:
        yield f"exports {image.exports()}"
    yield from frame_findings(image)
    if size >= MAX_SIZE:
        yield f"{size} bytes without symbols; the limit is {MAX_SIZE}"


def main():
    library, strip = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        stripped = os.path.join(folder, "stripped.dll")
        subprocess.run([strip, "-o", stripped, library], check=True)
        with open(stripped, "rb") as file:
            data = file.read()
    image = Image(data)
    print(f"{len(data)} bytes without symbols, flags {image.dll_flags:#06x}, sections "
          + " ".join(name for name, *_ in image.sections) + ", imports from " + " ".join(image.libraries()))
    found = list(findings(image, len(data)))
    for line in found:
        print("image: " + line, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
