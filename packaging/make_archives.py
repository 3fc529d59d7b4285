#!/usr/bin/env python3
"""Packs folders into zip archives and writes the checksums of all files of the release:

    make_archives.py <release folder> <folder>...

Each folder <name> becomes <name>.zip, with the folder as top entry. The archives depend on nothing but the files and
the source date.
"""

import hashlib
import stat
import sys
import time
import zipfile
from pathlib import Path

import source_date

SUMS = "SHA256SUMS"
UNIX = 3 # as the system that made an entry, whose file attributes are Unix permissions


def add(archive, path, name):
    # Zip has no dates before 1980 and no time zones.
    info = zipfile.ZipInfo(name, max(time.gmtime(source_date.seconds())[:6], (1980, 1, 1, 0, 0, 0)))
    info.compress_type = zipfile.ZIP_DEFLATED
    info.create_system = UNIX
    info.external_attr = (stat.S_IFREG | 0o644) << 16 # readable by everybody, whoever unpacks
    archive.writestr(info, path.read_bytes())


def pack(folder, output):
    with zipfile.ZipFile(output, "w") as archive:
        for path in sorted(folder.rglob("*"), key=lambda each: each.as_posix()):
            if path.is_file():
                add(archive, path, f"{folder.name}/{path.relative_to(folder).as_posix()}")


def write_sums(folder):
    lines = [f"{hashlib.sha256(path.read_bytes()).hexdigest()}  {path.name}\n"
             for path in sorted(folder.iterdir()) if path.name != SUMS]
    (folder / SUMS).write_text("".join(lines), encoding="ascii")


if __name__ == "__main__":
    release, *folders = (Path(each) for each in sys.argv[1:])
    for folder in folders:
        pack(folder, release / (folder.name + ".zip"))
    write_sums(release)
