#!/usr/bin/env python3
"""Compiles the client kit's Interop.cs and C# sample with Mono, and compares the metadata of Interop.cs with the expected
type library, which is written independently of the interface definition:

    interop_test.py <unpacked client kit> <work folder>

No object is created: Mono has no COM on this system.
"""

import re
import subprocess
import sys
from pathlib import Path

TESTS = Path(__file__).resolve().parents[1]
EXPECTED = TESTS / "support" / "TypeLibrary_expected.cpp"
# The C# source has no name for a result.
RESULT_NAME = re.compile(r"(\[out,retval\] \w+\*+) \w+")


def expected_rows():
    text = EXPECTED.read_text(encoding="utf-8")
    text = re.sub(r'"\s*\n\s*"', "", text) # joins the parts of a long row
    interfaces, classes = text.split("expectedClasses()")
    iids = {}
    for name, iid, block in re.findall(r'\{"(I\w+)",\s*"(\{[^}]*\})",\s*\d+,\s*\{(.*?)\}\}', interfaces, re.S):
        rows, iids[name] = re.findall(r'"([^"]*)"', block), iid.lower()
        yield f"interface {name} {iids[name]} InterfaceIsDual"
        yield from (f"{name} | {RESULT_NAME.sub(lambda match: match[1], row)}" for row in rows)
    for name, clsid, interface in re.findall(r'\{"(\w+)",\s*"(\{[^}]*\})",\s*"(I\w+)"', classes):
        yield f"class {name} {clsid.lower()} {interface} {iids[interface]}"


def run(*command):
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode != 0:
        raise SystemExit(f"{' '.join(map(str, command))}\n{result.stdout}{result.stderr}")
    return result.stdout


def main():
    kit, folder = Path(sys.argv[1]), Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    library, printer = folder / "Interop.dll", folder / "PrintInterop.exe"
    # With -doc the compiler also checks the comments.
    run("mcs", "-warnaserror", "-target:library", f"-doc:{folder / 'Interop.xml'}", f"-out:{library}",
        kit / "import" / "Interop.cs")
    sample = kit / "samples" / "csharp"
    if "../../import/Interop.cs" not in (sample / "PolicyOutcome.csproj").read_text(encoding="utf-8"):
        raise SystemExit("the sample's project does not compile the kit's Interop.cs")
    run("mcs", "-warnaserror", f"-reference:{library}", f"-out:{folder / 'PolicyOutcome.exe'}",
        sample / "PolicyOutcome.cs")
    run("mcs", "-warnaserror", f"-out:{printer}", Path(__file__).with_name("PrintInterop.cs"))
    found, expected = run("mono", printer, library).splitlines(), list(expected_rows())
    print(f"{len(found)} rows, {len(expected)} expected")
    differences = [f"only compiled: {row}" for row in found if row not in expected]
    differences += [f"only expected: {row}" for row in expected if row not in found]
    if differences or not expected or len(found) != len(set(found)):
        raise SystemExit("\n".join(differences) or "no rows, or rows twice")
    print("PASSED")


main()
