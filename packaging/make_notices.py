#!/usr/bin/env python3
"""Writes the licence notices of the compiler runtime that is linked into the library:

    make_notices.py <linker map> <NOTICES.txt>
"""

import sys
from pathlib import Path

import runtime

HEAD = """Tarnwick.dll and jobobjects.exe contain code of these projects, linked in by the compiler:

{list}

Debian's notices of these packages follow. They cover each whole package; the files contain only small parts of
them.
"""


def notices(linked):
    lines = [f"- {each.origin.name} ({each.package} {each.version}): {each.origin.license}" for each in linked]
    sources = {each.source: each for each in linked}
    parts = [HEAD.format(list="\n".join(lines))]
    for each in sources.values():
        parts.append(f"\n{'=' * 79}\n{each.origin.name}\n{'=' * 79}\n\n{each.copyright}")
    return "".join(parts)


if __name__ == "__main__":
    map_path, output = (Path(each) for each in sys.argv[1:])
    output.write_text(notices(runtime.read(map_path)), encoding="utf-8")
