#!/usr/bin/env python3
"""Runs check.cmd in a new Wine prefix and compares the tool's output for each state with check.txt.

    check_test.py PREFIX TOOL LIBRARY ASSEMBLY [--write]

ASSEMBLY is a folder with the library, its catalogue and its manifest. check.txt calls the tool's bitness OWN-bit and the
other one OTHER-bit. It holds the output of the 64-bit tool, so --write needs that tool. In 32-bit Wine, the tool does not
print the line "OTHER-bit programs".
"""
import re
import shutil
import struct
import subprocess
import sys
from pathlib import Path

from run_transcript import same

HERE = Path(__file__).resolve().parent
MACHINES = {0x014C: ("x86", 32), 0x8664: ("amd64", 64)}
OTHER_MACHINE = {0x014C: 0x8664, 0x8664: 0x014C}
MANIFEST = """<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">
    <assemblyIdentity type="win32" name="Program" version="1.0.0.0" processorArchitecture="ARCHITECTURE"/>
    <dependency>
        <dependentAssembly>
            <assemblyIdentity type="win32" name="JobObjects" version="1.0.0.0" processorArchitecture="ARCHITECTURE"/>
        </dependentAssembly>
    </dependency>
</assembly>
"""


def windows(path):
    return "Z:" + str(path).replace("/", "\\")


def older(library):
    """The library with the version 0.9.0.0."""
    at = library.index(struct.pack("<I", 0xFEEF04BD)) + 8 # the file version in VS_FIXEDFILEINFO
    return library[:at] + struct.pack("<II", 9, 0) + library[at + 8:]


def machine_at(image):
    """The offset of the machine code in the PE header."""
    return struct.unpack_from("<I", image, 0x3C)[0] + 4


def machine_of(image):
    return struct.unpack_from("<H", image, machine_at(image))[0]


def header_of_the_other_bitness(library):
    """The headers of a program of the other bitness."""
    at = machine_at(library)
    return library[:at] + struct.pack("<H", OTHER_MACHINE[machine_of(library)]) + library[at + 2:4096]


def prepare(folder, architecture, tool, library, assembly):
    shutil.rmtree(folder, ignore_errors=True)
    for name in ["beside", "free", "lonely", "older"]:
        (folder / name).mkdir(parents=True)
    content = Path(library).read_bytes()
    for name in [".", "beside"]:
        shutil.copy(library, folder / name)
    (folder / "older/Tarnwick.dll").write_bytes(older(content))
    shutil.copy(HERE / "catalogues/sound.xml", folder / "older/JobAttributes.xml")
    (folder / "other_bitness.exe").write_bytes(header_of_the_other_bitness(content))
    (folder / "truncated.dll").write_bytes(content[:4096])
    for name in ["Tarnwick.dll", "JobAttributes.xml", "JobObjects.manifest"]:
        shutil.copy(Path(assembly) / name, folder / "free")
    shutil.copy(Path(assembly) / "JobObjects.manifest", folder / "lonely")
    for name in ["beside", "free", "lonely"]:
        shutil.copy(tool, folder / name / "jobobjects.exe")
    for name in [".", "beside", "free"]:
        shutil.copy(tool, folder / name / "program.exe")
    for name in ["beside", "free"]:
        (folder / name / "program.exe.manifest").write_text(MANIFEST.replace("ARCHITECTURE", architecture),
                                                            encoding="utf-8")


def main(prefix, tool, library, assembly, *options):
    folder = Path(prefix + ".library")
    architecture, bits = MACHINES[machine_of(Path(tool).read_bytes())]
    prepare(folder, architecture, tool, library, assembly)
    run = subprocess.run([HERE / "../reach/run_isolated.sh", prefix, "no", "cmd", "/c", "check.cmd", windows(tool),
                          windows(folder)], cwd=HERE, capture_output=True, timeout=280, check=False)
    text = run.stdout.decode("utf-8").replace("\r", "").replace(windows(folder), "FOLDER")
    text = text[max(text.find("== "), 0):] # skip Wine's own output
    text = re.sub("^regsvr32: .*\n", "", text, flags=re.MULTILINE) # Wine 10 reports success in spite of /s
    version = re.search("^Tool +([0-9.]+),", text, re.MULTILINE)
    text = text.replace(version[1], "VERSION") if version else text
    lines = text.replace(f"{bits}-bit", "OWN-bit").replace(f"{96 - bits}-bit", "OTHER-bit").splitlines()
    transcript = HERE / "check.txt"
    if "--write" in options:
        if bits != 64:
            return "--write needs a 64-bit tool"
        transcript.write_text("\n".join(lines) + "\n", encoding="utf-8")
        return 0
    expected = [line for line in transcript.read_text(encoding="utf-8").splitlines()
                if bits == 64 or not line.startswith("OTHER-bit programs")]
    if not same(lines, expected):
        names = Path("check.expected"), Path("check.actual")
        for name, content in zip(names, (expected, lines)):
            name.write_text("\n".join(content) + "\n", encoding="utf-8")
        subprocess.run(["diff", "-u", *names], check=False)
        sys.stdout.write(run.stderr.decode("utf-8", "replace"))
        return "the output differs"
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
