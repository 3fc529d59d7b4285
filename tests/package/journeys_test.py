#!/usr/bin/env python3
"""Follows users from the release files to their first result, in a new Wine prefix without the library:

    journeys_test.py <wine> <release files' beginning> <client kit.zip> <exchange.exe>

The beginning is a folder and the part of the names that the files of one bitness share, such as
release/JobObjects-1.0.0. exchange.exe is built from the client kit alone (build_consumer.sh). installer_test.py follows
the deployer.
"""

import shutil
import subprocess
import sys
import zipfile
from pathlib import Path

import installation
from installation import check, drive, installer, run, windows_path

beginning, kit, exchange = sys.argv[2:]


def unpack(archive, folder):
    """Unpacks an archive into a folder of the drive, and returns the folder inside."""
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(drive / folder)
    return drive / folder / Path(archive).stem


def last_line(output):
    return output.strip().splitlines()[-1] if output.strip() else ""


def check_output(what, output, *expected):
    check(what, [f"no {each!r} in: {output}" for each in expected if each not in output])


def tool(folder, *arguments, expected=0):
    """Runs the support engineer's tool, and returns its output and messages."""
    result = subprocess.run([installation.wine, windows_path(folder / "jobobjects.exe"), *arguments], capture_output=True,
                            text=True, encoding="utf-8", cwd=folder)
    output = (result.stdout + result.stderr).replace("\r", "")
    check(f"jobobjects {' '.join(arguments)} returns {expected}",
          [] if result.returncode == expected else [result.returncode, output])
    return output


def script_author():
    """Runs a script without registration: unpacks the archive, gives the script host its manifest."""
    folder = unpack(f"{beginning}-registration-free.zip", "script author")
    samples = unpack(kit, "script author") / "samples"
    shutil.copy(drive / "windows" / "system32" / "cscript.exe", folder)
    (folder / "YourProgram.exe.manifest").rename(folder / "cscript.exe.manifest")
    script = samples / "print_job.vbs"
    run("cscript", "//nologo", windows_path(script), expected=1) # the plain script host does not find the library
    output = run(windows_path(folder / "cscript.exe"), "//nologo", windows_path(script))
    check("the script author's first script works", [] if last_line(output) == "All 6 jobs agree." else [output])
    return run(windows_path(folder / "cscript.exe"), "//nologo", windows_path(write_record_script(folder)))


def write_record_script(folder):
    script = folder / "record.vbs"
    script.write_text('Set job = CreateObject("Corvane.PrintJob")\n'
                      'job.UserName = "a.berg"\n'
                      "WScript.Echo job.Xml\n", encoding="ascii")
    return script


def support_engineer(record):
    """Diagnoses a machine and a record with the tools archive alone, then with the library installed."""
    folder = unpack(f"{beginning}-tools.zip", "support engineer")
    (folder / "record.xml").write_text(record, encoding="utf-8")
    (folder / "damaged.xml").write_text(record.replace("</UserName>", "</Username>"), encoding="utf-8")
    check_output("the tool names the cause and the remedy", tool(folder, "check", expected=1),
                 "problem: the library is not registered", "remedy:", "1 problem found.")
    tool(folder, "validate", "record.xml", expected=3)
    installer("/i", f"{beginning}.msi")
    check_output("the tool finds no problem after the installation", tool(folder, "check"), "No problem found.")
    check_output("the tool validates a record", tool(folder, "validate", "record.xml"), "unchanged")
    check_output("the tool finds the damage", tool(folder, "validate", "damaged.xml", expected=5), "damaged.xml:",
                 "error:")
    check_output("the tool shows a record", tool(folder, "show", "record.xml"), "UserName", "a.berg")


def cpp_developer():
    """Runs the sample that was built from the client kit, with the installed library."""
    check("the C++ developer's client works", [] if last_line(run(windows_path(exchange))) == "All 3 jobs arrived."
          else ["another last line"])


def main():
    record = script_author()
    support_engineer(record)
    cpp_developer()
    installer("/x", f"{beginning}.msi")
    print("PASSED")


main()
