#!/usr/bin/env python3
"""Validates and shows records of up to 100 MB: the tool's memory is limited, and its time grows with the size.

    large_test.py FOLDER PROGRAM...
"""
import os
import resource
import subprocess
import sys
from pathlib import Path

MEGABYTE = 1000 * 1000
LINE = ("<CopyLine><PaperSize>{}</PaperSize><PaperDimensions>2100,2970</PaperDimensions>"
        "<Attributes>Duplex,B&amp;W</Attributes><Sheets>1</Sheets><PagesBW>2</PagesBW><PagesColor>0</PagesColor>"
        "<PagesBlank>0</PagesBlank></CopyLine>\n")


def write_copy_lines(path, size, papers):
    """Returns the number of lines. Paper names have one length, so that the lines have too."""
    lines = size // len(LINE.format("P000000"))
    with open(path, "w", encoding="utf-8") as file:
        file.write("<JobCopyLines>")
        file.writelines(LINE.format(f"P{number % papers:06}") for number in range(lines))
        file.write("</JobCopyLines>")
    return lines


def run(program, *arguments):
    """Returns the output and the processor time."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    done = subprocess.run([*program, *arguments], capture_output=True, timeout=240, check=False)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    assert not done.stderr, done.stderr.decode("utf-8")
    return done.stdout.decode("utf-8"), after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def main(folder, *program):
    Path(folder).mkdir(parents=True, exist_ok=True)
    os.chdir(folder)
    lines = write_copy_lines("merged.xml", 100 * MEGABYTE, 5)
    merged, merged_time = run(program, "validate", "merged.xml")
    assert f"{lines // 5 + (1 if lines % 5 else 0)} copy lines of paper 'P000000' come back as one" in merged, merged
    shown, _ = run(program, "show", "merged.xml")
    assert shown.count("  Item ") == 5, shown
    write_copy_lines("merged.xml", 20 * MEGABYTE, 5)
    _, part_time = run(program, "validate", "merged.xml")
    lines = write_copy_lines("distinct.xml", 20 * MEGABYTE, 1000 * 1000)
    shown, shown_time = run(program, "show", "distinct.xml")
    assert shown.count("  Item ") == lines, "an item is missing"
    memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024 // MEGABYTE
    print(f"100 MB: {merged_time:.1f} s, 20 MB: {part_time:.1f} s, {lines} items: {shown_time:.1f} s of processor "
          f"time; {memory} MB")
    assert memory < 1000, f"{memory} MB of memory"
    assert merged_time < 10 * part_time, "the time does not grow with the size"
    assert shown_time < 10, "the time of an item"
    os.remove("merged.xml")
    os.remove("distinct.xml")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
