#!/usr/bin/env python3
"""Runs check.cmd in a new Wine prefix and compares the tool's output for each state with check.txt.

    check_test.py PREFIX TOOL LIBRARY [--write]
"""
import shutil
import subprocess
import sys
from pathlib import Path

from run_transcript import same

HERE = Path(__file__).resolve().parent


def windows(path):
    return "Z:" + str(path).replace("/", "\\")


def main(prefix, tool, library, *options):
    folder = Path(prefix + ".library")
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    shutil.copy(library, folder)
    run = subprocess.run([HERE / "../reach/run_isolated.sh", prefix, "no", "cmd", "/c", "check.cmd", windows(tool),
                          windows(folder)], cwd=HERE, capture_output=True, timeout=170, check=False)
    text = run.stdout.decode("utf-8").replace("\r", "").replace(windows(folder), "FOLDER")
    # Skip Wine's own output and the version, which changes with every release.
    text = text[max(text.find("== "), 0):]
    lines = [line for line in text.splitlines() if not line.startswith("Version ")]
    expected = HERE / "check.txt"
    if "--write" in options:
        expected.write_text("\n".join(lines) + "\n", encoding="utf-8")
    elif not same(lines, expected.read_text(encoding="utf-8").splitlines()):
        actual = Path("check.actual")
        actual.write_text("\n".join(lines) + "\n", encoding="utf-8")
        subprocess.run(["diff", "-u", expected, actual], check=False)
        sys.stdout.write(run.stderr.decode("utf-8", "replace"))
        return "the output differs"
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
