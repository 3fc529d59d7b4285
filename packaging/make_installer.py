#!/usr/bin/env python3
"""Makes the installer from a folder with the files to install:

    make_installer.py <JobObjects.idl> <version> <platform> <folder of files> <JobObjects.msi>

The registry rows repeat what DllRegisterServer writes, so that the installer itself can remove them. Rows that the
libraries of both platforms need are in components that both installers share: Windows Installer removes them with the
last library. The same files and source date (source_date.py) give the same installer, bit by bit.
"""

import hashlib
import os
import re
import shutil
import subprocess
import sys
import tempfile
import uuid
from pathlib import Path
from xml.sax.saxutils import quoteattr

import interfaces
import source_date
from platforms import PLATFORMS

TEMPLATE = Path(__file__).with_name("JobObjects.wxs.in")
FILES = ("Tarnwick.dll", "jobobjects.exe", "JobAttributes.xml", "JobObjects.tlb", "LICENSE.txt", "NOTICES.txt")
APP_ID = "{184E2C3E-38AA-4CAB-8FF8-B99261F8A0B2}"
MODULE = "[#Tarnwick.dll]"
# Creates a key without values, and removes it on uninstallation.
KEY_ONLY = "*"
# Component.Attributes: do not replace an existing file; 64-bit component.
NEVER_OVERWRITE = 128
WIN64 = 256
# RegLocator.Type: a registry value; in the 64-bit view.
RAW_VALUE = 2
SEARCH_64_BIT_VIEW = 16


def progid_rows(item):
    """The rows (key, value name, value) of a class's ProgIDs; the name "" is the key's default value."""
    return [
        (item.versioned_progid, "", item.help),
        (item.versioned_progid + "\\CLSID", "", item.id),
        (item.progid, "", item.help),
        (item.progid + "\\CLSID", "", item.id),
        (item.progid + "\\CurVer", "", item.versioned_progid),
    ]


def class_rows(library, item):
    key = "CLSID\\" + item.id
    return [
        (key, "", item.help),
        (key, "AppID", APP_ID),
        (key + "\\ProgID", "", item.versioned_progid),
        (key + "\\VersionIndependentProgID", "", item.progid),
        (key + "\\Programmable", KEY_ONLY, ""),
        (key + "\\InprocServer32", "", MODULE),
        (key + "\\InprocServer32", "ThreadingModel", interfaces.THREADING_MODEL),
        (key + "\\TypeLib", "", library.id),
    ]


def type_library_rows(library):
    key = f"TypeLib\\{library.id}\\{library.version}"
    return [
        (key, "", library.help),
        (key + "\\FLAGS", "", "8"), # LIBFLAG_FHASDISKIMAGE
        (key + "\\HELPDIR", "", "[INSTALLDIR]"),
    ]


def type_library_path_row(library, platform):
    return (f"TypeLib\\{library.id}\\{library.version}\\{library.locale}\\{platform.type_library_key}", "",
            MODULE + "\\1")


def interface_rows(library, item):
    key = "Interface\\" + item.id
    return [
        (key, "", item.name),
        (key + "\\ProxyStubClsid", "", interfaces.TYPE_LIBRARY_MARSHALLER),
        (key + "\\ProxyStubClsid32", "", interfaces.TYPE_LIBRARY_MARSHALLER),
        (key + "\\TypeLib", "", library.id),
        (key + "\\TypeLib", "Version", library.version),
    ]


def shared_rows(library):
    """Rows in keys that have one view."""
    rows = [
        ("AppID\\" + APP_ID, "", "JobObjects"),
        ("AppID\\" + APP_ID, "DllSurrogate", ""),
        ("AppID\\Tarnwick.DLL", "AppID", APP_ID),
    ]
    for item in library.classes:
        rows += progid_rows(item)
    return rows + type_library_rows(library)


def all_interface_rows(library):
    return [row for item in library.interfaces for row in interface_rows(library, item)]


def own_rows(library, platform):
    rows = [type_library_path_row(library, platform)]
    for item in library.classes:
        rows += class_rows(library, item)
    # The rows in the 32-bit view are shared, because clients of the library in another process may be 32-bit.
    return rows + all_interface_rows(library) if platform.win64 == "yes" else rows


def registry_element(key, name, value):
    name_attribute = f" Name={quoteattr(name)}" if name else ""
    return (f'            <RegistryValue Root="HKCR" Key={quoteattr(key)}{name_attribute}'
            f' Type="string" Value={quoteattr(value)}/>')


def registry_elements(rows):
    return "\n".join(registry_element(*row) for row in rows)


def identifier(text):
    """A GUID derived from a text."""
    return str(uuid.uuid5(uuid.NAMESPACE_URL, "urn:jobobjects:" + text)).upper()


def own_identifier(platform, identifier_of_x86):
    """The identifier of a component that the installer does not share with that of another platform."""
    return identifier_of_x86 if platform.name == "x86" else identifier(f"{platform.name}:{identifier_of_x86}")


def content_hash(folder, source):
    digest = hashlib.sha256(source.encode())
    for name in FILES:
        digest.update(hashlib.sha256((folder / name).read_bytes()).digest())
    return digest.hexdigest()


def write_source(idl, version, platform, path):
    library = interfaces.read(idl)
    text = TEMPLATE.read_text(encoding="utf-8")
    values = {
        "VERSION": version,
        "PRODUCT": platform.product,
        "PRODUCT_CODE": identifier(f"product{platform.file_suffix}:{version}"),
        "UPGRADE_CODE": platform.upgrade_code,
        "PROGRAM_FILES": platform.program_files,
        "WIN64": platform.win64,
        "CONDITION": platform.condition,
        "OWN_REGISTRY": registry_elements(own_rows(library, platform)),
        "SHARED_REGISTRY": registry_elements(shared_rows(library)),
        "INTERFACES": registry_elements(all_interface_rows(library)),
    }
    for name, value in values.items():
        text = text.replace(f"@{name}@", value)
    text = re.sub(r'"own:([0-9A-F-]+)"', lambda match: f'"{own_identifier(platform, match[1])}"', text)
    path.write_text(text, encoding="utf-8")
    return text


def run(arguments, folder):
    """Runs a tool that ignores SOURCE_DATE_EPOCH with its clock set to that time."""
    date = source_date.utc().strftime("%Y-%m-%d %H:%M:%S")
    subprocess.run(["faketime", "-f", date, *arguments], cwd=folder, check=True,
                   env={**os.environ, "TZ": "UTC"})


def query(installer, statement):
    run(["msibuild", installer.name, "-q", statement], installer.parent)


def tables(installer):
    listed = subprocess.run(["msiinfo", "tables", installer], check=True, capture_output=True, text=True)
    return listed.stdout.split()


def complete_path_entry(installer):
    """The component that extends PATH if ADDTOPATH is set."""
    query(installer, "UPDATE `Component` SET `Condition` = 'ADDTOPATH' WHERE `Component` = 'PathEntry'")
    # The variable's name: * of the system, = set on installation, - removed with the component. [~] is its former value.
    if "Environment" not in tables(installer): # wixl 0.106 makes an empty one
        query(installer, "CREATE TABLE `Environment` (`Environment` CHAR(72) NOT NULL, `Name` CHAR(255) NOT NULL,"
                         " `Value` CHAR(255), `Component_` CHAR(72) NOT NULL PRIMARY KEY `Environment`)")
    query(installer, "INSERT INTO `Environment` (`Environment`, `Name`, `Value`, `Component_`)"
                     " VALUES ('Path', '=-*PATH', '[~];[INSTALLDIR]', 'PathEntry')")
    for action, sequence in (("RemoveEnvironmentStrings", 3300), ("WriteEnvironmentStrings", 5200)):
        query(installer, "INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`)"
                         f" VALUES ('{action}', {sequence})")


def complete(installer, version, platform, package_code):
    """Sets what wixl cannot express."""
    # A file without a version never replaces one that has one.
    query(installer, f"UPDATE `File` SET `Version` = '{version}.0', `Language` = '1033'"
                     " WHERE `File` = 'Tarnwick.dll'")
    query(installer, "DELETE FROM `MsiFileHash` WHERE `File_` = 'Tarnwick.dll'") # hashes are for files without a version
    query(installer, f"UPDATE `Component` SET `Attributes` = {NEVER_OVERWRITE | (platform.win64 == 'yes') * WIN64}"
                     " WHERE `Component` = 'Catalogue'")
    if platform.win64 == "yes":
        query(installer, f"UPDATE `RegLocator` SET `Type` = {RAW_VALUE | SEARCH_64_BIT_VIEW}")
    complete_path_entry(installer)
    run(["msibuild", installer.name, "-s", f"{platform.product} {version}", "Corvane", f"{platform.template};1033",
         "{%s}" % package_code], installer.parent)


def main(idl, version, platform, files, output):
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        for file in FILES:
            shutil.copyfile(files / file, folder / file)
            os.chmod(folder / file, 0o644)
            os.utime(folder / file, (source_date.seconds(), source_date.seconds()))
        source = write_source(idl, version, platform, folder / "JobObjects.wxs")
        installer = folder / "JobObjects.msi"
        # wixl accepts relative paths only.
        run(["wixl", "-a", platform.name, "-o", installer.name, "JobObjects.wxs"], folder)
        complete(installer, version, platform, identifier("package:" + content_hash(folder, source)))
        shutil.copyfile(installer, output)


if __name__ == "__main__":
    idl, version, platform, files, output = sys.argv[1:]
    main(Path(idl), version, PLATFORMS[platform], Path(files), Path(output))
