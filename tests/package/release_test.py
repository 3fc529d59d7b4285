#!/usr/bin/env python3
"""Checks the files of the release:

    release_test.py <release folder> <version> <platform> <objdump> <source folder>
"""

import hashlib
import json
import re
import stat
import subprocess
import sys
import tempfile
import zipfile
import zlib
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "JobObjects"))
import idl  # noqa: E402

UNIX = 3 # the system of an archive's entry
release, version, platform, objdump, sources = sys.argv[1:]
release = Path(release)
name, architecture, compiler = {
    "x86": (f"JobObjects-{version}", "x86", "i686"),
    "x64": (f"JobObjects-{version}-x64", "amd64", "x86-64"),
}[platform]

CONTENTS = {
    "registration-free": {"JobAttributes.xml", "JobObjects.manifest", "LICENSE.txt", "NOTICES.txt", "Tarnwick.dll",
                          "YourProgram.exe.manifest"},
    "sdk": {"JobObjects.idl", "JobObjects.tlb", "LICENSE.txt", "README.txt", "import/Interop.cs",
            "import/JobObjects_import.h", "include/JobObjects.h", "include/JobObjects.hpp",
            "lib/cmake/JobObjects/JobObjectsConfig.cmake", "lib/cmake/JobObjects/JobObjectsConfigVersion.cmake",
            "src/JobObjects_i.c", "src/JobObjects_i.cpp", "x64/JobObjects.tlb"},
    "symbols": {"Tarnwick.dll.debug", "Tarnwick.dll.map"},
    "tools": {"jobobjects.exe", "LICENSE.txt", "NOTICES.txt",
              *(path.relative_to(sources).as_posix() for path in Path(sources, "database").rglob("*.sql"))},
}
if platform == "x64":
    del CONTENTS["sdk"] # the 32-bit release has the client kit


def check(what, condition, seen=""):
    if not condition:
        raise SystemExit(f"FAILED: {what} {seen}")
    print("ok: " + what)


def output(*command, folder=None):
    return subprocess.run(command, capture_output=True, text=True, check=True, cwd=folder).stdout


def read_archive(component):
    folder = f"{name}-{component}"
    with zipfile.ZipFile(release / (folder + ".zip")) as archive:
        entries = archive.infolist()
        files = {each.filename.removeprefix(folder + "/"): archive.read(each) for each in entries}
    check(f"everybody may read the files of {component}",
          all(each.create_system == UNIX and each.external_attr >> 16 == stat.S_IFREG | 0o644 for each in entries))
    expected = CONTENTS[component]
    if component == "sdk":
        expected = expected | source_files("samples") | source_files("schemas")
        check("sdk contains the documentation", {"docs/index.html", "docs/samples/index.html"} <= files.keys()
              and all(f"docs/docs/reference/{each['name']}.html" in files for each in idl.read().classes))
    found = {each for each in files if not each.startswith("docs/")}
    check(f"{component} contains its files", found == expected, found ^ expected)
    return files


def source_files(folder):
    """The files that the client kit takes over; it has the overview as a page of the documentation."""
    root = Path(sources, folder)
    files = {path.relative_to(sources).as_posix() for path in root.rglob("*") if path.is_file()}
    return {each for each in files if not each.endswith((".clang-tidy", "/README.md"))}


def check_header(header):
    """The C++ declarations carry the comments of the interface definition."""
    declarations = re.findall(r"(.*)\n    virtual HRESULT STDMETHODCALLTYPE (\w+)\(", header)
    check("the header declares all members", len(declarations) == 329, len(declarations))
    missing = [name for before, name in declarations if not before.startswith("    /// ")]
    check("the header documents every member", not missing, missing)
    first = "    /// Number of black-and-white pages, without blank pages.\n"
    check("the header has the interface definition's comments", header.count(first) == 2, header.count(first))


def check_sums():
    lines = (release / "SHA256SUMS").read_text().splitlines()
    sums = {file: digest for digest, file in (line.split("  ") for line in lines)}
    found = {path.name: hashlib.sha256(path.read_bytes()).hexdigest()
             for path in release.iterdir() if path.name != "SHA256SUMS"}
    expected = {f"{name}-{component}.zip" for component in CONTENTS} | {name + ".msi", name + ".spdx.json"}
    check("the release contains its files", found.keys() == expected, sorted(found))
    check("the checksums match", sums == found)


def check_installer(library, folder):
    installer = release / (name + ".msi")
    output("msiextract", "-C", str(folder), str(installer))
    (found,) = folder.rglob("Tarnwick.dll")
    check("the installer has the same library", found.read_bytes() == library)
    properties = dict(line.split("\t", 1) for line in output("msiinfo", "export", str(installer), "Property")
                      .replace("\r", "").splitlines() if "\t" in line)
    check("the installer has the version", properties.get("ProductVersion") == version, properties)
    check("the installer names a contact", properties.get("ARPCONTACT") == "Corvane", properties)
    files = output("msiinfo", "export", str(installer), "File")
    check("the installer has the library's version", f"\t{version}.0\t1033\t" in files, files)


def check_symbols(library, symbols, folder):
    path = folder / "Tarnwick.dll"
    path.write_bytes(library)
    dump = output(objdump, "--full-contents", "--section=.gnu_debuglink", str(path))
    rows = re.findall(r"^ [0-9a-f]+ ((?:[0-9a-f]+ ){1,4})", dump, re.M)
    link = bytes.fromhex("".join(rows))
    file = link.split(b"\0")[0]
    check("the library names its symbol file", file == b"Tarnwick.dll.debug", file)
    at = (len(file) + 4) // 4 * 4
    check("the library has the symbol file's checksum",
          int.from_bytes(link[at:at + 4], "little") == zlib.crc32(symbols["Tarnwick.dll.debug"]))
    check("the symbol file has the debug information", b".debug_line" in symbols["Tarnwick.dll.debug"]
          and b".debug_line" not in library)
    check("the map lists functions", b"DllGetClassObject" in symbols["Tarnwick.dll.map"])


def check_bill(library):
    bill = json.loads((release / (name + ".spdx.json")).read_text())
    check("the bill of materials is SPDX 2.3", bill["spdxVersion"] == "SPDX-2.3" and bill["dataLicense"] == "CC0-1.0")
    elements = {each["SPDXID"]: each for each in bill["packages"] + bill["files"] + [bill]}
    relations = [(each["spdxElementId"], each["relationshipType"], each["relatedSpdxElement"])
                 for each in bill["relationships"]]
    check("its relations are between its elements",
          all(source in elements and target in elements for source, _, target in relations))
    (described,) = [elements[target] for _, kind, target in relations if kind == "DESCRIBES"]
    check("it describes this version", (described["name"], described["versionInfo"]) == ("JobObjects", version))
    (file,) = bill["files"]
    check("it has the checksum of the library", {"algorithm": "SHA256", "checksumValue": hashlib.sha256(library).hexdigest()}
          in file["checksums"])
    linked = {elements[target]["name"]: elements[target] for _, kind, target in relations if kind == "STATIC_LINK"}
    check("it lists the runtime that is linked in", linked.keys() == {
        f"g++-mingw-w64-{compiler}-win32", f"gcc-mingw-w64-{compiler}-win32", f"mingw-w64-{compiler}-dev"}, sorted(linked))
    for package, entry in linked.items():
        installed = output("dpkg-query", "-W", "-f", "${Version}", package)
        check(f"it has the version and a licence of {package}",
              entry["versionInfo"] == installed and entry["licenseDeclared"] not in ("", "NOASSERTION"), entry)


def check_paths(archives):
    for component, files in archives.items():
        for file, data in files.items():
            check(f"{component}: {file} does not contain the build folder", sources.encode() not in data)


def main():
    check_sums()
    archives = {component: read_archive(component) for component in CONTENTS}
    library = archives["registration-free"]["Tarnwick.dll"]
    with tempfile.TemporaryDirectory() as folder:
        check_installer(library, Path(folder, "installed"))
        check_symbols(library, archives["symbols"], Path(folder))
    manifest = archives["registration-free"]["JobObjects.manifest"].decode()
    check("the manifest has the product's major version",
          f'name="JobObjects" version="{version.split(".")[0]}.0.0.0"' in manifest)
    sample = archives["registration-free"]["YourProgram.exe.manifest"].decode()
    check("the sample manifest requests it", f'name="JobObjects" version="{version.split(".")[0]}.0.0.0"' in sample)
    check("both manifests name the platform", manifest.count(f'processorArchitecture="{architecture}"') == 1
          and sample.count(f'processorArchitecture="{architecture}"') == 2)
    if "sdk" in archives:
        check_header(archives["sdk"]["include/JobObjects.h"].decode())
    check_bill(library)
    check_paths(archives)
    print("PASSED")


main()
