#!/usr/bin/env python3
"""Makes the installer from a folder with the files to install:

    make_installer.py <JobObjects.idl> <version> <folder of files> <JobObjects.msi>

The registry rows repeat what DllRegisterServer writes, so that the installer itself can remove them. The same files
and source date (source_date.py) give the same installer, bit by bit.
"""

import hashlib
import os
import shutil
import subprocess
import sys
import tempfile
import uuid
from pathlib import Path
from xml.sax.saxutils import quoteattr

import interfaces
import source_date

TEMPLATE = Path(__file__).with_name("JobObjects.wxs.in")
FILES = ("Tarnwick.dll", "JobAttributes.xml", "JobObjects.tlb", "LICENSE.txt", "NOTICES.txt")
APP_ID = "{184E2C3E-38AA-4CAB-8FF8-B99261F8A0B2}"
MODULE = "[#Tarnwick.dll]"
# Creates a key without values, and removes it on uninstallation.
KEY_ONLY = "*"
# Component.Attributes: do not replace an existing file.
NEVER_OVERWRITE = 128


def class_rows(library, item):
    """The rows (key, value name, value) of a class; the name "" is the key's default value."""
    key = "CLSID\\" + item.id
    return [
        (item.versioned_progid, "", item.help),
        (item.versioned_progid + "\\CLSID", "", item.id),
        (item.progid, "", item.help),
        (item.progid + "\\CLSID", "", item.id),
        (item.progid + "\\CurVer", "", item.versioned_progid),
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
        (f"{key}\\{library.locale}\\win32", "", MODULE + "\\1"),
        (key + "\\FLAGS", "", "8"), # LIBFLAG_FHASDISKIMAGE
        (key + "\\HELPDIR", "", "[INSTALLDIR]"),
    ]


def interface_rows(library, item):
    key = "Interface\\" + item.id
    return [
        (key, "", item.name),
        (key + "\\ProxyStubClsid", "", interfaces.TYPE_LIBRARY_MARSHALLER),
        (key + "\\ProxyStubClsid32", "", interfaces.TYPE_LIBRARY_MARSHALLER),
        (key + "\\TypeLib", "", library.id),
        (key + "\\TypeLib", "Version", library.version),
    ]


def registry_rows(library):
    rows = [
        ("AppID\\" + APP_ID, "", "JobObjects"),
        ("AppID\\" + APP_ID, "DllSurrogate", ""),
        ("AppID\\Tarnwick.DLL", "AppID", APP_ID),
    ]
    for item in library.classes:
        rows += class_rows(library, item)
    rows += type_library_rows(library)
    for item in library.interfaces:
        rows += interface_rows(library, item)
    return rows


def registry_element(key, name, value):
    name_attribute = f" Name={quoteattr(name)}" if name else ""
    return (f'            <RegistryValue Root="HKCR" Key={quoteattr(key)}{name_attribute}'
            f' Type="string" Value={quoteattr(value)}/>')


def identifier(text):
    """A GUID derived from a text."""
    return str(uuid.uuid5(uuid.NAMESPACE_URL, "urn:jobobjects:" + text)).upper()


def content_hash(folder, source):
    digest = hashlib.sha256(source.encode())
    for name in FILES:
        digest.update(hashlib.sha256((folder / name).read_bytes()).digest())
    return digest.hexdigest()


def write_source(idl, version, path):
    rows = registry_rows(interfaces.read(idl))
    text = TEMPLATE.read_text(encoding="utf-8")
    for name, value in (("VERSION", version), ("PRODUCT_CODE", identifier("product:" + version)),
                        ("REGISTRY", "\n".join(registry_element(*row) for row in rows))):
        text = text.replace(f"@{name}@", value)
    path.write_text(text, encoding="utf-8")
    return text


def run(arguments, folder):
    """Runs a tool that ignores SOURCE_DATE_EPOCH with its clock set to that time."""
    date = source_date.utc().strftime("%Y-%m-%d %H:%M:%S")
    subprocess.run(["faketime", "-f", date, *arguments], cwd=folder, check=True,
                   env={**os.environ, "TZ": "UTC"})


def query(installer, statement):
    run(["msibuild", installer.name, "-q", statement], installer.parent)


def complete(installer, version, package_code):
    """Sets what wixl cannot express."""
    # A file without a version never replaces one that has one.
    query(installer, f"UPDATE `File` SET `Version` = '{version}.0', `Language` = '1033'"
                     " WHERE `File` = 'Tarnwick.dll'")
    query(installer, "DELETE FROM `MsiFileHash` WHERE `File_` = 'Tarnwick.dll'") # hashes are for files without a version
    query(installer, f"UPDATE `Component` SET `Attributes` = {NEVER_OVERWRITE} WHERE `Component` = 'Catalogue'")
    run(["msibuild", installer.name, "-s", f"JobObjects {version}", "Corvane", "Intel;1033",
         "{%s}" % package_code], installer.parent)


def main(idl, version, files, output):
    with tempfile.TemporaryDirectory() as name:
        folder = Path(name)
        for file in FILES:
            shutil.copyfile(files / file, folder / file)
            os.chmod(folder / file, 0o644)
            os.utime(folder / file, (source_date.seconds(), source_date.seconds()))
        source = write_source(idl, version, folder / "JobObjects.wxs")
        installer = folder / "JobObjects.msi"
        # wixl accepts relative paths only.
        run(["wixl", "-o", installer.name, "JobObjects.wxs"], folder)
        complete(installer, version, identifier("package:" + content_hash(folder, source)))
        shutil.copyfile(installer, output)


if __name__ == "__main__":
    idl, version, files, output = sys.argv[1:]
    main(Path(idl), version, Path(files), Path(output))
