#!/usr/bin/env python3
"""Installs the libraries of both platforms in a new 64-bit Wine prefix, and removes either:

    both_installers_test.py <wine> <32-bit msi> <64-bit msi>
"""

import sys
from pathlib import Path

import installation
from installation import check, check_nothing_left, differences, installer, registered_classes, run, snapshot, windows_path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "JobObjects"))
import idl  # noqa: E402

packages = {"32": sys.argv[2], "64": sys.argv[3]}
HOSTS = {"32": "C:\\windows\\syswow64\\cscript.exe", "64": "C:\\windows\\system32\\cscript.exe"}
CLASSES = [each["name"] for each in idl.read().classes]
# Wine, unlike Windows, has a second view of ProgIDs, to which the 32-bit installer writes. The last installer removes
# them from its own view only, so this test cannot show that both remove them.
PROGIDS = "wow6432node\\corvane.", "corvane."
SCRIPT = windows_path(Path(__file__).with_name("installed_client.vbs").resolve())


def run_script(bits):
    output = run(HOSTS[bits], "//nologo", SCRIPT, *CLASSES).replace("\r", "").splitlines()
    expected = [f"{len(CLASSES)} classes", "database: 1,24,0,12,6", "closed"]
    check(f"a {bits}-bit script uses all classes and the catalogue",
          differences(dict(enumerate(output)), dict(enumerate(expected))))


def keys(before):
    """The registered entries. Both write the folder of the type library's help, and the last one stays."""
    return {(key.replace(*PROGIDS), name): data for (key, name), data in registered_classes(before).items()
            if not key.endswith("\\helpdir")}


def keys_of_one(bits, before):
    installer("/i", packages[bits])
    written = keys(before)
    run_script(bits)
    installer("/x", packages[bits])
    check_nothing_left(before, f"removing the {bits}-bit library")
    return written


def main():
    for host in HOSTS.values(): # the script hosts register their type library on their first run
        empty = installation.prefix / "empty.vbs"
        empty.touch()
        run(host, "//nologo", windows_path(empty))
    before = snapshot()
    software = "hkey_local_machine\\software"
    installation.ignored_keys += [f"{software}\\classes\\{each}" for each in PROGIDS]
    installation.ignored_keys.append(f"{software}\\wow6432node\\classes\\corvane.") # the same keys once more
    alone = {bits: keys_of_one(bits, before) for bits in packages}
    for removed, kept in (("32", "64"), ("64", "32")):
        for first, second in (("32", "64"), ("64", "32")):
            installer("/i", packages[first])
            installer("/i", packages[second])
            run_script("32")
            run_script("64")
            installer("/x", packages[removed])
            check(f"removing the {removed}-bit library leaves the keys of the other alone",
                  differences(keys(before), alone[kept]))
            run_script(kept)
            installer("/x", packages[kept])
            check_nothing_left(before, "removing both")
    print("PASSED")


main()
