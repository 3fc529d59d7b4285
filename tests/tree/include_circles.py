#!/usr/bin/env python3
"""Fails if source folders include each other in a cycle. Prints each dependency of a cycle with its includes.

    include_circles.py ROOT
"""
import collections
import pathlib
import re
import sys

FOLDERS = ("JobObjects", "common", "runtime", "tools")


def targets(root, source):
    """The files of this tree that a source includes."""
    for name in re.findall(r'^\s*#include "([^"]+)"', source.read_text(encoding="utf-8"), re.MULTILINE):
        for folder in (source.parent, root):
            target = (folder / name).resolve()
            if target.is_file() and target.is_relative_to(root):
                yield target
                break


def dependencies(root):
    """Maps (folder, included folder) to the includes."""
    found = collections.defaultdict(list)
    sources = [file for folder in FOLDERS for file in sorted((root / folder).rglob("*"))
               if file.suffix in (".h", ".cpp")]
    if not sources:
        sys.exit(f"no sources below {root}")
    for source in sources:
        for target in targets(root, source):
            if target.parent != source.parent:
                found[source.parent, target.parent].append((source, target))
    return found


def reachable(start, found):
    seen, waiting = set(), [start]
    while waiting:
        folder = waiting.pop()
        for here, there in found:
            if here == folder and there not in seen:
                seen.add(there)
                waiting.append(there)
    return seen


def main():
    root = pathlib.Path(sys.argv[1]).resolve()
    found = dependencies(root)
    circular = [each for each in found if each[0] in reachable(each[1], found)]
    for here, there in circular:
        print(f"{here.relative_to(root)} -> {there.relative_to(root)}")
        for source, target in found[here, there]:
            print(f"    {source.relative_to(root)} includes {target.relative_to(root)}")
    if circular:
        sys.exit(f"{len(circular)} circular dependencies between folders")
    print(f"{len(found)} dependencies between folders, none circular")


main()
