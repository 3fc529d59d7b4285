#!/usr/bin/env python3
"""Makes the folder of the verification kit for the tests of one build:

    make_kit.py BUILD SOURCES PLATFORM STRIP KIT

Takes the tests from ctest's files, so that the kit has the tests of the suite: each is in the list that verify.exe
reads, KIT/PLATFORM/tests.txt, or is left out for one of the reasons below. Fails on a test with neither.
"""

import re
import shutil
import subprocess
import sys
from pathlib import Path

import ctest_files

build, sources, platform, strip, kit = sys.argv[1:]
build, sources, kit = Path(build), Path(sources), Path(kit)
here = kit / platform
packages = build / "packaging"
cases = ctest_files.variables(sources / "tests" / "RunToEnd.cmake")
scripts = ctest_files.variables(sources / "tests" / "scripts" / "run_script.cmake")

sys.path.insert(0, str(sources / "JobObjects"))
import idl  # noqa: E402

TESTS = ctest_files.read(build)
# The options of a Catch program that list its test cases, one a line.
LISTING = {"2": "--list-test-names-only", "3": "--list-tests --verbosity quiet"}[
    next(test.catch_version for test in TESTS.values() if test.catch_version)]

# Tests that the kit does not have, by the beginning of their names.
LEFT_OUT = {
    "bitness.": "registers both libraries in a machine of its own",
    "database.": "needs database programs, Python and a browser",
    "hosts.log_": "changes the machine's log configuration without restoring it",
    "hosts.unregistered": "needs a machine of its own",
    "image.": "needs the build machine's tools",
    "package.": "needs the build machine's tools",
    "refused_": "tests the build machine's test runner",
    "register_server": "the set-up of the tests with the registered library does it",
    "samples.recipes": "needs Python",
    "schemas.": "needs the build machine's XML validator",
    "tool.": "needs Python",
}
# Test cases that do not run in the kit, or not in the kit under Wine.
CASES_LEFT_OUT = {
    "FileLog_on_a_drive_whose_root_is_a_reparse_point_is_written": "needs such a drive",
    "Registry_of_the_registration_free_tests_has_no_entry_of_the_library": "the library may be registered",
}
CASES_LEFT_OUT_UNDER_WINE = {
    "PrintJob_without_registration_works_from_another_apartment": "Wine would register the type library",
    "FileLog_below_a_folder_link_is_written": "Wine cannot create links",
    "FileLog_below_a_folder_link_is_rotated": "Wine cannot create links",
}
# Test cases that need a registered library, because a manifest overrides what they replace or remove.
REGISTERED_CASES = {
    "com_tests": "ChildCreation_*",
    "fault_tests": "Faults_in_unregistration_*",
    "frame_tests": "Unregistration_*",
}
# Programs that a test program starts.
STARTED = {"attach_tests.exe": ["overrun.exe"], "log_tests.exe": ["log_writer.exe"]}
DEFAULT_SECONDS = 120


def reason_to_leave_out(name):
    return next((reason for beginning, reason in LEFT_OUT.items() if name.startswith(beginning)), None)


def copy(source, target):
    target.parent.mkdir(parents=True, exist_ok=True)
    if source.is_dir():
        shutil.copytree(source, target, dirs_exist_ok=True, ignore=shutil.ignore_patterns(".clang-tidy"))
    elif source.suffix in (".exe", ".dll"):
        # Without --preserve-dates the header would get the current time.
        subprocess.run([strip, "--preserve-dates", "-o", str(target), str(source)], check=True)
    else:
        shutil.copyfile(source, target)


def windows(path):
    return str(path).replace("/", "\\")


def copy_runtime(source, target):
    """Copies the compiler's shared runtime for the programs and libraries of a folder that use it."""
    for library in source.glob("lib*.dll"):
        copy(library, target / library.name)


def in_kit(path):
    """Copies a file or folder of the sources or the build to the kit and returns its path there."""
    path = Path(path)
    if path.name in ("Tarnwick.dll", "JobObjects.tlb"):
        return "{here}\\" + path.name
    if path.is_relative_to(build):
        folder = path.parent.name if path.parent.name in ("posix", "win32") else ""
        target = here / folder / path.name
        copy_runtime(path.parent, target.parent)
    else:
        target = kit / path.relative_to(sources)
    if path.exists(): # not every fuzz harness has regressions
        copy(path, target)
    return "{kit}\\" + windows(target.relative_to(kit))


def is_ours(word):
    return Path(word).is_relative_to(sources)


def argument(word):
    if is_ours(word):
        return f'"{in_kit(word)}"'
    return f'"{word}"' if " " in word else word


def copy_program(path, changes_machine, needs_manifest):
    """Copies a test program, if needed with the manifest that makes the library available."""
    folder = here / "machine" if changes_machine else here
    if path.parent.name in ("posix", "win32"):
        folder = folder / path.parent.name
        copy_runtime(path.parent, folder)
    for name in (path.name, *STARTED.get(path.name, [])):
        copy(path.with_name(name), folder / name)
    if needs_manifest:
        copy(packages / "YourProgram.exe.manifest", folder / (path.name + ".manifest"))
    return "{kit}\\" + windows((folder / path.name).relative_to(kit))


def join_script(path):
    joined = kit / "scripts" / path.name
    joined.parent.mkdir(exist_ok=True)
    subprocess.run(["cmake", f"-DSCRIPT={path}", f"-DJOINED={joined}", "-P",
                    str(sources / "tests" / "scripts" / "join_script.cmake")], check=True)
    return joined.name


def definitions(command):
    return dict(word[2:].split("=", 1) for word in command if word.startswith("-D"))


class Row:
    """A line of the list for one test of ctest."""

    def __init__(self, test):
        self.test = test
        given = definitions(test.command)
        self.words = test.command if test.catch_version else given.get("COMMAND", "").split(";")
        self.exit_code = "0"
        folder = test.properties.get("WORKING_DIRECTORY")
        self.folder = Path(folder) if folder else None
        self.expect, self.expectation = "cases", LISTING # a Catch program
        if "SCRIPT" in given:
            self.words = ["cscript", "//nologo", join_script(Path(given["SCRIPT"]))]
            self.expect, self.expectation = "line", scripts["CLOSING_LINE"]
            self.exit_code = scripts["EXIT_CODE"]
            self.folder = kit / "scripts"
        elif "EXPECTED" in given:
            self.expect, self.expectation = "file", in_kit(given["EXPECTED"])
            self.folder = Path(given["EXPECTED"]).parent
        elif "CLOSING_LINE" in given:
            self.expect, self.expectation = "line", given["CLOSING_LINE"]
        elif not self.words[0]:
            raise SystemExit(f"make_kit: {test.name} is neither in the kit nor left out")
        self.skip_emulator()

    def skip_emulator(self):
        isolated = [word.endswith("run_isolated.sh") for word in self.words]
        if any(isolated):
            # The script is followed by a prefix and the library to register.
            self.words = self.words[isolated.index(True) + 3:]
        elif re.search(r"/wine(64)?\.sh$", self.words[0]):
            self.words = self.words[1:]

    def changes_machine(self):
        return self.words[0] == "cscript" or "machine" in self.test.properties.get("LABELS", "").split(";")

    def command(self, changes_machine):
        if self.words[0] == "cscript":
            script = self.words[-1]
            if self.folder != kit / "scripts":
                in_kit(self.folder / script)
            return " ".join(['"{system}\\cscript.exe"', *map(argument, self.words[1:])])
        uses_library = "registered" in self.test.properties.get("FIXTURES_REQUIRED", "").split(";")
        needs_manifest = uses_library and not changes_machine
        program = f'"{copy_program(Path(self.words[0]), changes_machine, needs_manifest)}"'
        return " ".join([program, *map(argument, self.words[1:])])

    def environment(self):
        for assignment in self.test.properties.get("ENVIRONMENT", "").split(";"):
            name, _, value = assignment.partition("=")
            if name in ("JOBOBJECTS_TLB", "OANOCACHE"):
                return f"{name}={in_kit(value) if is_ours(value) else value}"
        return ""

    def working_folder(self):
        if self.folder is None:
            return "{work}"
        if self.folder.is_relative_to(kit):
            return "{kit}\\" + windows(self.folder.relative_to(kit))
        if self.folder.is_relative_to(build):
            return "{here}"
        if self.folder == sources / "samples": # the clients read its files
            return in_kit(self.folder)
        return "{kit}\\" + windows(self.folder.relative_to(sources))

    def lines(self, changes_machine):
        """The lines of this test in the part that changes the machine, or in the other."""
        registered = REGISTERED_CASES.get(self.test.name)
        if registered:
            filter_of_part = registered if changes_machine else "~" + registered
            suffix = ".registered" if changes_machine else ""
            yield self.line(changes_machine, f"{LISTING} {filter_of_part}", suffix)
        elif self.changes_machine() == changes_machine:
            yield self.line(changes_machine, self.expectation)

    def line(self, changes_machine, expectation, suffix=""):
        seconds = self.test.properties.get("TIMEOUT", str(DEFAULT_SECONDS))
        return "\t".join(["test", self.test.name + suffix, self.expect, expectation, self.exit_code, seconds,
                          self.environment(), self.working_folder(), self.command(changes_machine)])


def host(name, *arguments):
    return " ".join([f'"{{system}}\\{name}.exe"', *arguments])


def check_of_tool():
    return "\t".join(["test", "registered.check", "line", "No problem found[.]", "0", "60", "", "{work}",
                      '"{here}\\machine\\jobobjects.exe" check'])


def installed_client():
    """A script that uses all classes of the installed library."""
    classes = [each["name"] for each in idl.read().classes]
    copy(sources / "tests" / "package" / "installed_client.vbs", kit / "scripts" / "installed_client.vbs")
    return "\t".join(["test", "installed.script", "line", "closed", "0", "60", "", "{kit}\\scripts",
                      host("cscript", "//nologo", "installed_client.vbs", *classes)])


def lines():
    rows, left_out = [], []
    for test in TESTS.values():
        reason = reason_to_leave_out(test.name)
        if reason:
            left_out.append(f"left out\t{test.name}\t{reason}")
        else:
            rows.append(Row(test))
    yield "closing line of cases\t" + cases["CLOSING_LINE"]
    yield "part\twithout registration\tanybody\t\t"
    yield from (line for row in rows for line in row.lines(changes_machine=False))
    library = '/s "{here}\\Tarnwick.dll"'
    yield f"part\tregistration\tadministrator\t{host('regsvr32', library)}\t{host('regsvr32', '/u', library)}"
    yield check_of_tool()
    yield from (line for row in rows for line in row.lines(changes_machine=True))
    package = '"{here}\\JobObjects.msi" /qn /norestart'
    yield f"part\tinstaller\tadministrator\t{host('msiexec', '/i', package)}\t{host('msiexec', '/x', package)}"
    yield check_of_tool().replace("registered.check", "installed.check")
    yield installed_client()
    yield from left_out
    yield from (f"case left out\t{name}\t{reason}" for name, reason in CASES_LEFT_OUT.items())
    yield from (f"case left out under Wine\t{name}\t{reason}" for name, reason in CASES_LEFT_OUT_UNDER_WINE.items())


def copy_product():
    for name in ("Tarnwick.dll", "JobAttributes.xml", "JobObjects.tlb"):
        shutil.copyfile(packages / "files" / name, here / name)
    shutil.copyfile(packages / "files" / "jobobjects.exe", here / "machine" / "jobobjects.exe")
    shutil.copyfile(packages / "JobObjects.manifest", here / "JobObjects.manifest")
    (package,) = packages.glob("JobObjects-*.msi")
    shutil.copyfile(package, here / "JobObjects.msi")


def copy_common():
    for name in ("README.txt", "verify.cmd"):
        shutil.copyfile(sources / "tests" / "verify" / name, kit / name)
    for name in ("LICENSE.txt", "NOTICES.txt"):
        shutil.copyfile(packages / "files" / name, kit / name)
    for data in ("tests/data", "JobObjects/JobAttributes.xml"):
        copy(sources / data, kit / data)
    if platform == "x86":
        copy(build / "tests" / "verify" / "verify.exe", kit / "verify.exe")


def main():
    shutil.rmtree(kit, ignore_errors=True)
    (here / "machine").mkdir(parents=True)
    copy_product()
    copy_common()
    (here / "tests.txt").write_text("".join(line + "\n" for line in lines()), encoding="ascii", newline="\n")


main()
