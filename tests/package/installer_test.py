#!/usr/bin/env python3
"""Installs, upgrades and removes the library in a new Wine prefix, and compares files and registry:

    installer_test.py <wine> <platform> <older.msi> <newer.msi> <newer version> <registration-free.zip> <client.exe>

Run by installer_test.sh, which makes the prefix. First runs the client without registration, with nothing installed.
"""

import shutil
import subprocess
import sys
import xml.etree.ElementTree
import zipfile
from pathlib import Path

import installation
from installation import (UNINSTALL, check, check_nothing_left, differences, installer, read_registry,
                          registered_classes, run, snapshot, windows_path)

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "JobObjects"))
import idl  # noqa: E402

INSTALLED = {"Tarnwick.dll", "jobobjects.exe", "JobAttributes.xml", "JobObjects.tlb", "LICENSE.txt", "NOTICES.txt"}

ENVIRONMENT = "HKEY_LOCAL_MACHINE\\System\\CurrentControlSet\\Control\\Session Manager\\Environment"

prefix = installation.prefix
drive = installation.drive
folder = drive / "Program Files" / "JobObjects"
platform, older, newer, newer_version, free_archive, client = sys.argv[2:]
product = "JobObjects" if platform == "x86" else "JobObjects (64-bit)"
script = Path(__file__).with_name("installed_client.vbs").resolve()


def write_by_regsvr32(package, before):
    """The entries that regsvr32 writes for the library in the installer's folder."""
    unpacked = prefix / "unpacked"
    subprocess.run(["msiextract", "-C", str(unpacked), package], check=True, stdout=subprocess.DEVNULL)
    (found,) = unpacked.rglob("Tarnwick.dll")
    shutil.copytree(found.parent, folder)
    library = "C:\\Program Files\\JobObjects\\Tarnwick.dll"
    run("regsvr32", "/s", library)
    written = registered_classes(before)
    run("regsvr32", "/s", "/u", library)
    shutil.rmtree(folder)
    check_nothing_left(before, "unregistering")
    return written


def unpack_free():
    """Unpacks the registration-free files and adds the client as the program."""
    with zipfile.ZipFile(free_archive) as archive:
        archive.extractall(prefix)
    unpacked = prefix / Path(free_archive).stem
    shutil.copy(client, unpacked)
    (unpacked / "YourProgram.exe.manifest").rename(unpacked / (Path(client).name + ".manifest"))
    return unpacked


def check_client(program, what):
    check(what, differences({1: run(windows_path(program)).strip()}, {1: "received: Report.docx"}))


def manifest_entries(manifest):
    """The classes and interfaces of the manifest as registry entries."""
    name = {"asm": "urn:schemas-microsoft-com:asm.v1"}
    root = xml.etree.ElementTree.parse(manifest).getroot()
    file = root.find("asm:file", name)
    library = file.find("asm:typelib", name)
    entries = {(f"typelib\\{library.get('tlbid').lower()}\\{library.get('version')}", None): ""}
    for each in file.findall("asm:comClass", name):
        key = "clsid\\" + each.get("clsid").lower()
        versioned, progid = each.get("progid"), each.find("asm:progid", name).text
        entries |= {(key, ""): each.get("description"), (key + "\\progid", ""): versioned,
                    (key + "\\versionindependentprogid", ""): progid,
                    (key + "\\inprocserver32", "threadingmodel"): each.get("threadingModel"),
                    (key + "\\typelib", ""): each.get("tlbid")}
        for progid_key in (versioned.lower(), progid.lower()):
            entries[progid_key + "\\clsid", ""] = each.get("clsid")
    for each in root.findall("asm:comInterfaceExternalProxyStub", name):
        key = "interface\\" + each.get("iid").lower()
        entries |= {(key, ""): each.get("name"), (key + "\\proxystubclsid32", ""): each.get("proxyStubClsid32"),
                    (key + "\\typelib", ""): each.get("tlbid"),
                    (key + "\\typelib", "version"): library.get("version")}
    return entries


def in_terms_of_manifest(written):
    """The registry entries that a manifest can express."""
    words = ("", "progid", "versionindependentprogid", "inprocserver32", "typelib", "proxystubclsid32", "clsid")

    def has_words(key, name):
        parts = key.split("\\")
        if parts[0] in ("clsid", "interface"):
            return (len(parts) == 2 or parts[2] in words) and (
                name == "threadingmodel" or name == "version" or name == "" and parts[2:] != ["inprocserver32"])
        if parts[0] == "typelib":
            return len(parts) == 3 and name is None
        return len(parts) == 2 and parts[1] == "clsid" and name == ""

    return {(key, name): data for (key, name), data in written.items()
            if has_words(key, name) and not (name == "appid")}


def run_script():
    classes = [each["name"] for each in idl.read().classes]
    output = run("cscript", "//nologo", windows_path(script), *classes).replace("\r", "").splitlines()
    expected = [f"{len(classes)} classes", "database: 1,24,0,12,6", "closed"]
    check("a script uses all classes and the catalogue", differences(dict(enumerate(output)),
                                                                     dict(enumerate(expected))))


def check_product(version):
    tree = read_registry(UNINSTALL)
    found = [data for (key, name), data in tree.items()
             if key.startswith(UNINSTALL.lower() + "\\") and name == "displayversion"
             and tree.get((key, "displayname")) == product]
    check(f"{version} is installed and no other", [] if found == [version] else found or ["none"])


def check_registration_free():
    unpacked = unpack_free()
    run(windows_path(client), expected=1) # fails without registration and manifest
    check_client(unpacked / Path(client).name, "a client with the sample manifest needs no registration")
    return unpacked / "JobObjects.manifest"


def check_installation(before, by_regsvr32, manifest):
    installer("/i", older)
    by_installer = registered_classes(before)
    check("the installer writes what regsvr32 writes", differences(by_regsvr32, by_installer))
    check("the manifest matches what the installer writes",
          differences(manifest_entries(manifest), in_terms_of_manifest(by_installer)))
    check("the installer installs its files", INSTALLED ^ {each.name for each in folder.iterdir()})
    run_script()
    check_client(client, "a compiled client finds the installed library")


def check_upgrade(before, by_regsvr32):
    catalogue = folder / "JobAttributes.xml"
    changed = catalogue.read_bytes() + b"<!-- changed -->"
    catalogue.write_bytes(changed)
    installer("/i", newer)
    check_product(newer_version)
    check("an upgrade keeps the changed catalogue", [] if catalogue.read_bytes() == changed else ["changed"])
    check("an upgrade keeps the registration", differences(by_regsvr32, registered_classes(before)))
    run_script()
    installer("/x", newer)
    check_nothing_left(before, "removing the newer version")


def check_other_folder(before):
    chosen = drive / "Agent" / "Job Objects"
    chosen.parent.mkdir()
    installer("/i", older, 'INSTALLDIR="C:\\Agent\\Job Objects"')
    check("the installer uses the chosen folder", INSTALLED ^ {each.name for each in chosen.iterdir()})
    installer("/i", newer)
    check("an upgrade stays in that folder", INSTALLED ^ {each.name for each in chosen.iterdir()})
    check("an upgrade makes no other folder", [folder] if folder.exists() else [])
    run_script()
    installer("/x", newer)
    chosen.parent.rmdir()
    check_nothing_left(before, "removing from that folder")


def read_path():
    """The system's PATH, from the export's hexadecimal form."""
    kind, data = read_registry(ENVIRONMENT)[ENVIRONMENT.lower(), "path"].split(":", 1)
    if kind != "hex(2)":
        raise SystemExit(f"PATH no longer expands variables: {kind}")
    return bytes.fromhex("".join(data.split()).replace(",", " ")).decode("utf-16-le").rstrip("\0")


def check_path(before):
    path = read_path()
    added = path + ";C:\\Program Files\\JobObjects\\"
    installer("/i", older)
    check("the installer leaves PATH alone unless asked", differences({"": read_path()}, {"": path}))
    installer("/x", older)
    installer("/i", older, "ADDTOPATH=1")
    check("the installer adds its folder to PATH", differences({"": read_path()}, {"": added}))
    check("the tool is found", [] if "validate" in run("cmd", "/c", "jobobjects --help") else ["no help"])
    installer("/i", newer)
    check("an upgrade keeps the entry in PATH", differences({"": read_path()}, {"": added}))
    installer("/x", newer)
    left = read_path().removesuffix(";") # Wine leaves the separator
    check("removing restores PATH", differences({"": left}, {"": path}))
    check_nothing_left(before, "removing with the entry in PATH")


def repair():
    # What /fomus means. Wine's msiexec has no /f.
    installer("/i", older, "REINSTALL=ALL", "REINSTALLMODE=omus")


def check_repair(before, by_regsvr32):
    installer("/i", older)
    catalogue = folder / "JobAttributes.xml"
    catalogue.write_bytes(catalogue.read_bytes() + b"<!-- changed -->")
    changed = catalogue.read_bytes()
    for name in ("Tarnwick.dll", "jobobjects.exe"):
        (folder / name).unlink()
    (folder / "JobObjects.tlb").write_bytes(b"damaged")
    run("reg", "delete", "HKEY_CLASSES_ROOT\\Corvane.PrintJob", "/f")
    repair()
    check("a repair restores missing files", INSTALLED ^ {each.name for each in folder.iterdir()})
    check("a repair restores the registration", differences(by_regsvr32, registered_classes(before)))
    check("a repair keeps a changed catalogue", [] if catalogue.read_bytes() == changed else ["changed"])
    run_script()
    catalogue.unlink()
    repair()
    run_script()
    installer("/x", older)
    check_nothing_left(before, "removing after a repair")


def check_downgrade():
    installer("/i", newer)
    installer("/i", older, expected=1603 % 256) # ERROR_INSTALL_FAILURE; exit codes have one byte here
    check_product(newer_version)


def main():
    # The script host registers its own type library on its first run.
    empty = prefix / "empty.vbs"
    empty.touch()
    run("cscript", "//nologo", windows_path(empty))
    before = snapshot()
    by_regsvr32 = write_by_regsvr32(older, before)
    check("regsvr32 writes enough entries for all classes", [] if len(by_regsvr32) > 300 else [len(by_regsvr32)])
    manifest = check_registration_free()
    check_installation(before, by_regsvr32, manifest)
    check_upgrade(before, by_regsvr32)
    check_other_folder(before)
    check_path(before)
    check_repair(before, by_regsvr32)
    check_downgrade()
    print("PASSED")


main()
