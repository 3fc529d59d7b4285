#!/usr/bin/env python3
"""Registers the libraries of both bitnesses in turn and compares the output of both tools with check.txt.

    check_test.py WINE FOLDER LIBRARY_32 TOOL_32 LIBRARY_64 TOOL_64
"""
import re
import shutil
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
CATALOGUE = HERE.parents[1] / "JobObjects/JobAttributes.xml"
SYSTEM_FOLDERS = {"32": "syswow64", "64": "system32"}
# Each state, and the call of regsvr32 that makes it from the one before.
STATES = [("no library", None), ("the 32-bit library", ("32",)), ("both libraries", ("64",)),
          ("the 64-bit library", ("32", "/u"))]


def windows(path):
    return "Z:" + str(path).replace("/", "\\")


def prepare(folder, libraries):
    shutil.rmtree(folder, ignore_errors=True)
    for bits, library in libraries.items():
        (folder / bits).mkdir(parents=True)
        for file in [library, CATALOGUE]:
            shutil.copy(file, folder / bits)


def register(wine, folder, bits, *options):
    subprocess.run([wine, f"C:\\windows\\{SYSTEM_FOLDERS[bits]}\\regsvr32.exe", "/s", *options,
                    windows(folder / bits / "Tarnwick.dll")], check=True, timeout=60)


def check(wine, folder, tool):
    done = subprocess.run([wine, tool, "check"], capture_output=True, timeout=60, check=False)
    text = done.stdout.decode("utf-8").replace("\r", "").replace(windows(folder), "FOLDER")
    version = re.search("^Tool +([0-9.]+),", text)
    text = text.replace(version[1], "VERSION") if version else text
    return [*text.splitlines(), f"exit {done.returncode}"]


def main(wine, folder, library_32, tool_32, library_64, tool_64):
    folder = Path(folder).resolve()
    prepare(folder, {"32": library_32, "64": library_64})
    lines = []
    for state, call in STATES:
        if call:
            register(wine, folder, *call)
        for bits, tool in (("32", tool_32), ("64", tool_64)):
            lines += [f"== {state}, {bits}-bit tool", *check(wine, folder, tool)]
    expected, actual = HERE / "check.txt", folder / "check.actual"
    actual.write_text("\n".join(lines) + "\n", encoding="utf-8")
    if lines != expected.read_text(encoding="utf-8").splitlines():
        subprocess.run(["diff", "-u", expected, actual], check=False)
        return "the output differs"
    print(f"2 tools checked {len(STATES)} states")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
