"""Installs and removes packages in the Wine prefix WINEPREFIX, with the emulator named first on the command line, and
reads files and registry."""

import os
import re
import subprocess
import sys
from pathlib import Path

import registry

CLASSES = "HKEY_LOCAL_MACHINE\\Software\\Classes"
UNINSTALL = "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall"
# Keys that Windows Installer creates for its own use on the first installation.
INSTALLER_KEYS = (CLASSES + "\\Installer", "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Installer")
# Prefixes of further keys, in lower case, that a test ignores.
ignored_keys = []
INSTALLER_FOLDER = "windows/Installer"
# The 32-bit view's interfaces, under both names. Wine 10's installer writes their rows into the 64-bit view.
INTERFACES_32 = tuple(f"hkey_local_machine\\software\\{names}\\interface\\"
                      for names in ("classes\\wow6432node", "wow6432node\\classes"))

prefix = Path(os.environ["WINEPREFIX"])
drive = prefix / "drive_c"
wine = sys.argv[1]


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def run(*command, expected=0):
    result = subprocess.run([wine, *command], capture_output=True, text=True)
    if result.returncode != expected:
        raise SystemExit(f"{' '.join(command)} returned {result.returncode}, not {expected}\n"
                         f"{result.stdout}{result.stderr}")
    return result.stdout


def check(what, differences):
    if differences:
        lines = "\n".join(f"  {each}" for each in list(differences)[:40])
        raise SystemExit(f"FAILED: {what}\n{lines}")
    print("ok: " + what, flush=True)


def installer(option, package, *properties, expected=0):
    """The properties are quoted as on a Windows command line, which a script has and a list of arguments has not."""
    script = prefix / "installer.cmd"
    script.write_text(f'@msiexec {option} "{windows_path(package)}" /qn {" ".join(properties)}\r\n'
                      "@exit %errorlevel%\r\n")
    run("cmd", "/c", windows_path(script), expected=expected)


def wine_version():
    version = subprocess.run(["wine", "--version"], capture_output=True, text=True, check=True).stdout
    return int(re.match(r"wine-(\d+)", version)[1])


def read_registry(root):
    export = prefix / "export.reg"
    run("regedit", "/E", windows_path(export), root)
    tree = registry.read(export)
    if wine_version() < 10:
        return tree
    return {entry: data for entry, data in tree.items() if not entry[0].startswith(INTERFACES_32)}


def read_software():
    # Wine's services write to other keys at any time.
    tree = read_registry("HKEY_LOCAL_MACHINE\\Software") | read_registry("HKEY_CURRENT_USER\\Software")
    # Windows Installer's own keys are not leftovers as long as they have no values, and so name no product.
    values = {key for key, name in tree if name is not None}
    return {entry: data for entry, data in tree.items()
            if not entry[0].startswith(tuple(ignored_keys)) and not (entry[0].startswith(tuple(each.lower() for each in INSTALLER_KEYS))
                    and not any(key.startswith(entry[0]) for key in values))}


def read_files():
    return {str(path.relative_to(drive)) for path in drive.rglob("*")} - {INSTALLER_FOLDER}


def snapshot():
    return read_software(), read_files()


def check_nothing_left(before, what):
    tree, files = snapshot()
    check(f"{what} leaves no file", files ^ before[1])
    check(f"{what} leaves no registry entry", registry.added(tree, before[0]) | registry.added(before[0], tree))


def registered_classes(before):
    """Entries added below HKEY_CLASSES_ROOT, without Windows Installer's own."""
    classes = registry.below(registry.added(read_registry(CLASSES), before[0]), CLASSES)
    # In an installer, a folder always ends in a backslash.
    return {entry: data.rstrip("\\") if entry[0].endswith("\\helpdir") else data
            for entry, data in classes.items() if entry[0].split("\\")[0] != "installer"}


def differences(left, right):
    return sorted(f"{entry}: {left.get(entry)!r} and {right.get(entry)!r}"
                  for entry in left.keys() | right.keys() if left.get(entry) != right.get(entry))
