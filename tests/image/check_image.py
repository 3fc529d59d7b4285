#!/usr/bin/env python3
"""Checks how the library is linked: check_image.py LIBRARY STRIP_PROGRAM

Prints what it found; each finding against the rules below is a line of its own, and the exit code is then 1.
"""
import os
import struct
import subprocess
import sys
import tempfile

MAX_SIZE = 700_000  # bytes without symbols
DLL_FLAGS = {"loads at any address": 0x0040, "data is not executable": 0x0100, "no exception handlers": 0x0400}
RELOCATIONS_STRIPPED = 0x0001
EXECUTE, WRITE = 0x20000000, 0x80000000
IMPORT_DIRECTORY, RELOCATION_DIRECTORY = 1, 5
EXPORTS = ["DllCanUnloadNow", "DllGetClassObject", "DllRegisterServer", "DllUnregisterServer"]
# Parts of every Windows. The C runtime's files are the system's own, msvcrt.dll, and no compiler's.
LIBRARIES = ["advapi32.dll", "kernel32.dll", "msvcrt.dll", "ole32.dll", "oleaut32.dll"]


class Image:
    """The headers of a 32-bit PE file."""

    def __init__(self, data):
        self.data = data
        header = self.number("<I", 0x3C)
        if data[:2] != b"MZ" or data[header:header + 4] != b"PE\0\0":
            raise ValueError("not a PE file")
        machine, count = struct.unpack_from("<HH", data, header + 4)
        optional_size, self.characteristics = struct.unpack_from("<HH", data, header + 20)
        optional = header + 24
        if machine != 0x14C or self.number("<H", optional) != 0x10B:
            raise ValueError("not a file for 32-bit Windows")
        self.dll_flags = self.number("<H", optional + 70)
        self.directories = [struct.unpack_from("<II", data, optional + 96 + 8 * i)
                            for i in range(self.number("<I", optional + 92))]
        self.sections = [self.section(optional + optional_size + 40 * i) for i in range(count)]

    def number(self, form, offset):
        return struct.unpack_from(form, self.data, offset)[0]

    def section(self, offset):
        name = self.data[offset:offset + 8].rstrip(b"\0").decode()
        size, address, raw_size, raw = struct.unpack_from("<IIII", self.data, offset + 8)
        return name, address, max(size, raw_size), raw, self.number("<I", offset + 36)

    def offset(self, address):
        for _, start, size, raw, _ in self.sections:
            if start <= address < start + size:
                return address - start + raw
        raise ValueError(f"address {address:#x} lies in no section")

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


def findings(image, size):
    for what, flag in DLL_FLAGS.items():
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
    if size >= MAX_SIZE:
        yield f"{size} bytes without symbols, allowed are fewer than {MAX_SIZE}"


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
