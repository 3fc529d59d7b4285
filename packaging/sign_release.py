#!/usr/bin/env python3
"""Signs a release with Authenticode:

    sign_release.py <release folder> <certificate.p12> [--password-file FILE] [--timestamp URL]

Signs library and tool, replaces them in archives and installers, signs the installers, and brings bills of materials and
checksums up to date. All other files stay as they are. The certificate needs a password, which the tool asks for unless
it is in a file.
"""

import argparse
import re
import shutil
import subprocess
import tempfile
import zipfile
from pathlib import Path

import make_archives
import make_installer
import make_spdx
from interfaces import idl
from platforms import PLATFORMS

SIGNED = ("Tarnwick.dll", "jobobjects.exe")
ARCHIVES = ("registration-free", "tools") # that contain them
INSTALLER = re.compile(r"JobObjects-([0-9.]+?)(-x64)?\.msi")


def sign(path, options):
    """Signs a file in place."""
    command = ["osslsigncode", "sign", "-pkcs12", options.certificate, "-h", "sha256", "-n", "JobObjects"]
    command += ["-readpass", options.password_file] if options.password_file else ["-askpass"]
    command += ["-ts", options.timestamp] if options.timestamp else []
    signed = path.with_name(path.name + ".signed")
    subprocess.run([*command, "-in", path, "-out", signed], check=True)
    shutil.move(signed, path)


def replace_in_archive(archive, files, folder):
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(folder)
    for path in (folder / archive.stem).iterdir():
        if path.name in SIGNED:
            shutil.copyfile(files / path.name, path)
    make_archives.pack(folder / archive.stem, archive)


def sign_platform(installer, options, folder):
    version, suffix = INSTALLER.fullmatch(installer.name).groups()
    (platform,) = [each for each in PLATFORMS.values() if each.file_suffix == (suffix or "")]
    subprocess.run(["msiextract", "-C", folder / "installed", installer], check=True, stdout=subprocess.DEVNULL)
    (library,) = (folder / "installed").rglob("Tarnwick.dll")
    files = library.parent
    for name in SIGNED:
        sign(files / name, options)
    make_installer.main(idl.IDL, version, platform, files, installer)
    sign(installer, options)
    for name in ARCHIVES:
        replace_in_archive(installer.with_name(f"{installer.stem}-{name}.zip"), files, folder)
    bill = installer.with_suffix(".spdx.json")
    bill.write_text(make_spdx.with_library(bill.read_text(encoding="utf-8"), library), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("release", type=Path)
    parser.add_argument("certificate", type=Path)
    parser.add_argument("--password-file", type=Path)
    parser.add_argument("--timestamp")
    options = parser.parse_args()
    installers = sorted(options.release.glob("*.msi"))
    if not installers:
        raise SystemExit(f"sign_release: no installer in {options.release}")
    for installer in installers:
        with tempfile.TemporaryDirectory() as folder:
            sign_platform(installer, options, Path(folder))
    make_archives.write_sums(options.release)


if __name__ == "__main__":
    main()
