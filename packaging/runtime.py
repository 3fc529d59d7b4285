"""Finds the parts of the compiler's runtime that are linked into the library, and their Debian packages.

The linker map names each archive that contributes code.
"""

import os
import re
import subprocess
from dataclasses import dataclass, field
from pathlib import Path


@dataclass(frozen=True)
class Origin:
    """A project whose code is linked in."""
    name: str
    license: str
    license_text: str # pattern that the package's copyright file must match, so that a changed licence is noticed
    homepage: str


# By Debian source package.
ORIGINS = {
    "gcc-mingw-w64": Origin("GCC runtime libraries (libstdc++, libgcc)",
                            "GPL-3.0-or-later WITH GCC-exception-3.1",
                            r"GCC RUNTIME LIBRARY EXCEPTION\s+Version 3\.1",
                            "https://gcc.gnu.org/"),
    "mingw-w64": Origin("mingw-w64 C runtime", "ZPL-2.1", r"Files: \*\nCopyright: .*\nLicense: ZPL-2\.1\n",
                        "https://www.mingw-w64.org/"),
}


@dataclass
class Linked:
    """A Debian package with files that are linked in."""
    package: str
    version: str
    source: str
    source_version: str
    files: list = field(default_factory=list)

    @property
    def origin(self):
        return ORIGINS[self.source]

    @property
    def copyright(self):
        return Path("/usr/share/doc", self.package, "copyright").read_text(encoding="utf-8")


def linked_files(map_text):
    """Paths of the archives and start-up objects. Only these are absolute; this project's own are relative."""
    members, rest = map_text.split("\nMemory Configuration\n")
    paths = re.findall(r"^(/\S+\.a)\(", members, re.M) + re.findall(r"^LOAD (/\S+\.o)$", rest, re.M)
    return sorted({os.path.normpath(each) for each in paths})


def _output(*command):
    return subprocess.run(command, capture_output=True, text=True, check=True).stdout


def read(map_path):
    """The packages that are linked in, sorted by name."""
    found = {}
    for path in linked_files(map_path.read_text(encoding="utf-8", errors="replace")):
        package = _output("dpkg-query", "-S", path).split(":")[0]
        if package not in found:
            found[package] = Linked(package, *_output(
                "dpkg-query", "-W", "-f", "${Version} ${source:Package} ${source:Version}", package).split())
        found[package].files.append(Path(path).name)
    for each in found.values():
        if each.source not in ORIGINS:
            raise SystemExit(f"runtime: {', '.join(each.files)} of {each.package} is linked in; add its licence to "
                             "ORIGINS")
        if not re.search(each.origin.license_text, each.copyright):
            raise SystemExit(f"runtime: the copyright file of {each.package} does not contain {each.origin.license}")
    if not found:
        raise SystemExit(f"runtime: {map_path} names no archive of the compiler")
    return [found[name] for name in sorted(found)]
