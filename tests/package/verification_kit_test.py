#!/usr/bin/env python3
"""Runs the verification kit from its archive alone, in a new Wine prefix of WINEARCH:

    verification_kit_test.py <wine> <archive> [<tests to run>]

Without the last argument, a regular expression, it runs all tests and no broken kit.
"""

import os
import subprocess
import sys
import zipfile
from pathlib import Path

import installation
from installation import check, drive, prefix, run, snapshot, windows_path
import registry

archive = sys.argv[2]
only = sys.argv[3] if len(sys.argv) > 3 else ""
platforms = ["x86", "x64"] if os.environ["WINEARCH"] == "win64" else ["x86"]
kit = drive / "kit" / Path(archive).stem
report = kit / "JobObjects-verify-report.txt"
TEXT = " element is missing.".encode("utf-16-le") # expected by the hosts


def on_drive(*parts):
    """The Windows path of a file of the kit, on drive C."""
    return "\\".join(["C:", "kit", kit.name, *parts])


def verify(*options):
    """Runs the kit, and returns its exit code and its output."""
    result = subprocess.run([installation.wine, "cmd", "/c", on_drive("verify.cmd"), *options],
                            capture_output=True, text=True, encoding="utf-8", errors="replace", cwd=prefix)
    return result.returncode, result.stdout.replace("\r", "") + result.stderr


def rows(output):
    """The table: passed, failed and left out by test."""
    found = {}
    for line in output.splitlines():
        words = line.rsplit(None, 4)
        if len(words) == 5 and all(word.isdigit() for word in words[1:]):
            found[words[0].strip()] = [int(word) for word in words[1:4]]
    return found


def check_report(output):
    text = report.read_text(encoding="utf-8")
    in_report = rows(text.partition("== failed")[0])
    check("the report has the table", [row for row, counts in rows(output).items() if in_report.get(row) != counts])
    facts = text.splitlines()[:4]
    check("the report names product, system and Wine", [] if facts[0].startswith("JobObjects ")
          and "version " in facts[1] and "Wine " in facts[1] else facts)
    check("the report lists what was left out", [] if "x86 tests that are not in the kit: package.installer: " in text
          or only else ["no reason"])
    return text


def check_run():
    code, output = verify(*(["--only", only] if only else []))
    table = rows(output)
    print(output, flush=True)
    text = check_report(output)
    check("the kit returns 0", [] if code == 0 else [code, text.partition("== failed")[2].partition("== passed")[0]])
    failed = [row for row, counts in table.items() if counts[1] != 0]
    check("no test fails", failed)
    empty = [platform for platform in platforms if not any(row.startswith(platform) and counts[0] for row, counts in table.items())]
    check("tests of each platform pass", empty)
    check("the 64-bit tests need 64 bits", [] if ("this Windows has 32 bits" in text) == (platforms == ["x86"]) else [text[:500]])


def check_user():
    code, output = verify("--user", "--only", "x86 (hosts.plain|log_tests)$")
    table = rows(output)
    check("a user's tests run", [] if code == 0 and table.get("x86 hosts.plain") == [1, 0, 0] else [output])
    check("an administrator's do not", [] if table.get("x86 log_tests") == [0, 0, 1] else [output])


def check_registered():
    library = on_drive("x86", "Tarnwick.dll")
    register = "C:\\windows\\syswow64\\regsvr32.exe" if "x64" in platforms else "regsvr32"
    run(register, "/s", library)
    code, output = verify("--only", "x86 (hosts.plain|registered.check)$")
    table = rows(output)
    check("a registered library stays as it is", [] if code == 0 and table.get("x86 registered.check") == [0, 0, 1]
          and "registered already" in output else [output])
    check("other tests run beside a registered library", [] if table.get("x86 hosts.plain") == [1, 0, 0] else [output])
    run(register, "/s", "/u", library)


def check_broken_library():
    library = kit / "x86" / "Tarnwick.dll"
    sound = library.read_bytes()
    check("the library has the text to break", [] if TEXT in sound else ["missing"])
    library.write_bytes(sound.replace(TEXT, TEXT.upper()))
    code, output = verify("--only", "x86 hosts.plain$")
    library.write_bytes(sound)
    check("a broken library is found", [] if code == 1 and rows(output).get("x86 hosts.plain") == [0, 1, 0] else [code, output])
    text = report.read_text(encoding="utf-8")
    check("the report has the failed test's output", [] if "failed: " in text.partition("== failed")[2] else [text])


def check_broken_tests():
    """Tests that crash, hang, and end without their closing line."""
    listed = kit / "x86" / "tests.txt"
    sound = listed.read_text(encoding="ascii")
    crash = ["test", "broken.crash", "line", ".*", "0", "20", "", "{work}", '"{here}\\overrun.exe" overrun']
    endless = prefix / "endless.vbs"
    endless.write_text("Do\nLoop\n", encoding="ascii")
    hang = ["test", "broken.hang", "line", ".*", "0", "2", "", "{work}",
            f'"{{system}}\\cscript.exe" //nologo "{windows_path(endless)}"']
    silent = ["test", "broken.silent", "line", "reached its end", "0", "20", "", "{work}", '"{here}\\overrun.exe"']
    rows_of_broken = ["\t".join(each) for each in (crash, hang, silent)]
    listed.write_text("\n".join(["part\tbroken\tanybody\t\t", *rows_of_broken, sound]), encoding="ascii", newline="\n")
    code, output = verify("--only", "broken")
    listed.write_text(sound, encoding="ascii", newline="\n")
    for expected in ("0xC0000409", "reached its time limit", "ended without its closing line"):
        check(f"a test that {expected} fails", [] if expected in output else [output])
    check("the kit returns 1", [] if code == 1 else [code])


def main():
    # Each script host registers its own type library on its first run.
    empty = prefix / "empty.vbs"
    empty.touch()
    for folder in ("system32", "syswow64")[:len(platforms)]:
        run(f"C:\\windows\\{folder}\\cscript.exe", "//nologo", windows_path(empty))
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(kit.parent)
    before = snapshot()
    check_run()
    if only:
        check_user()
        check_registered()
        check_broken_library()
        check_broken_tests()
    report.unlink()
    tree, files = snapshot()
    check("the kit leaves no file", files ^ before[1])
    check("the kit leaves no registry entry", registry.added(tree, before[0]) | registry.added(before[0], tree))
    print("PASSED")


main()
