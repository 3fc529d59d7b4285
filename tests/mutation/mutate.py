#!/usr/bin/env python3
"""Builds and tests mutants of the product in copies of the source tree; see run.sh.

mutate.py COUNT SEED COPY...    a sample of all mutants
mutate.py check                 only checks that each mutant of equivalent.txt exists
mutate.py again COPY...         the last sample's survivors, and what an interrupted run left out
"""

import concurrent.futures
import hashlib
import json
import os
import pathlib
import queue
import random
import re
import resource
import signal
import subprocess
import sys
import time
from collections import Counter

import mutants

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
EQUIVALENT = HERE / "equivalent.txt"
RESULTS = ROOT / "build/mutation/results.json"
FOLDERS = ("JobObjects", "common", "runtime")
# Built into the tests of the other systems only.
NOT_IN_THE_PRODUCT = {"common/log/LogStampPosix.cpp"}
NEUTRAL = ("common/text/", "common/xml/", "common/log/Log", "common/log/QxLog", "common/QxDateTime", "common/QxMisc",
           "common/QxVersion", "common/QxException", "JobObjects/contents/")  # fmt: skip
GOAL = 97
BUILD_SECONDS = 600
TEST_SECONDS = 240
# Limits for a program's processor time: for its quick tests, and for any others.
QUICK_PROCESSOR_SECONDS = 5
TEST_PROCESSOR_SECONDS = 15
# Tests that take longer than this, in seconds, run after the others.
QUICK_TEST = 0.1

# The programs that test the library, the quickest first, with their targets; {build} is the folder of the build.
NATIVE = {
    "unit_tests": ["{build}/tests/unit/unit_tests", "--abort"],
    "short_character_tests": ["{build}/tests/unit/short_character_tests", "--abort"],
}
WINDOWS = {
    name: ["{wine}", f"{{build}}/tests/{folder}/{name}.exe", "--abort"]
    for name, folder in {
        "com_tests": "com",
        "wrapper_tests": "wrapper",
        "catalogue_file_tests": "unit",
        "module_tests": "unit",
        "log_tests": "log",
        "unload_tests": "com",
        "frame_tests": "com",
        "unit_tests": "unit",
    }.items()
}
LIBRARY = "JobObjects/Tarnwick.dll"
REGISTER = ["{wine}", "regsvr32", "/s", f"{{build}}/{LIBRARY}"]


def identity(source: str, mutant: mutants.Mutant) -> str:
    """The mutant as in equivalent.txt: file, line before and line after."""
    begin = source.rfind("\n", 0, mutant.start) + 1
    end = source.find("\n", mutant.end)
    before, after = source[begin:end], mutant.apply(source)[begin : end + len(mutant.text) - mutant.end + mutant.start]
    return "\n".join([mutant.file, "- " + " ".join(before.split()), "+ " + " ".join(after.split())])


def listed(path: pathlib.Path) -> set[str]:
    """The mutants of a file: three lines each, whatever follows up to an empty line."""
    if not path.exists():
        return set()
    text = re.sub(r"^#.*\n", "", path.read_text(encoding="utf-8"), flags=re.MULTILINE)
    return {"\n".join(entry.splitlines()[:3]) for entry in re.split(r"\n{2,}", text.strip("\n")) if entry}


def is_header(key: str) -> bool:
    """Whether the file, or the mutant, is a header's. Headers take longer because many objects depend on them."""
    return key.splitlines()[0].endswith(".h")


def every_mutant() -> dict[str, mutants.Mutant]:
    found = {}
    for folder in FOLDERS:
        for path in sorted((ROOT / folder).rglob("*")):
            file = str(path.relative_to(ROOT))
            if path.suffix in (".cpp", ".h") and file not in NOT_IN_THE_PRODUCT:
                source = path.read_text(encoding="utf-8")
                for mutant in mutants.mutants(file, source):
                    found.setdefault(identity(source, mutant), mutant)
    return found


def run(command: list[str], seconds: int, limits: dict[int, int] | None = None,
        environment: dict[str, str] | None = None, durations: Counter | None = None) -> str | None:  # fmt: skip
    """Runs a command. Returns None if it succeeds, otherwise the reason. Adds the durations that tests print."""

    def limit():
        for kind, most in (limits or {}).items():
            resource.setrlimit(kind, (most, most))

    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                               start_new_session=True, preexec_fn=limit, env=os.environ | (environment or {}))  # fmt: skip
    try:
        output = process.communicate(timeout=seconds)[0].decode(errors="replace")
    except subprocess.TimeoutExpired:
        os.killpg(process.pid, signal.SIGKILL)
        process.communicate()
        return "a hang"
    if durations is not None:
        for duration, name in re.findall(r"^([\d.]+) s: (\w+)", output, re.MULTILINE):
            durations[name] += float(duration)
    if process.returncode != 0:
        failed = re.search(r"-{20,}\r?\n(\w+)\r?\n-{20,}", output)
        return failed[1] if failed else f"exit code {process.returncode}"
    if "--abort" in command and not re.search(r"All tests passed \([1-9]\d* assertion", output):
        return f"an early end\n{output[-2000:]}"
    return None


class Build:
    """A build folder of a copy of the tree, with the test programs that it runs."""

    def __init__(self, copy: pathlib.Path, preset: str, programs: dict[str, list[str]]):
        self.folder = copy / "build" / preset
        self.wine = copy / "scripts/wine.sh"
        self.programs = programs
        self.limits: dict[int, int] = {}
        # As ctest sets it.
        self.environment = {"JOBOBJECTS_LINKED_FOLDER": str(self.folder / "tests/unit/linked_folder")}
        if programs is NATIVE:
            self.limits[resource.RLIMIT_AS] = 4 << 30
        self.kills: Counter = Counter()
        self.failed: dict[tuple[str, str], list[str]] = {}  # tests that failed before, by folder and program
        self.slow: dict[str, list[str]] = {}  # by program
        self.objects: dict[str, list[str]] = {}
        build = subprocess.run(["ninja", "-C", self.folder, *programs], capture_output=True, text=True)
        if build.returncode != 0:
            sys.exit(f"The unchanged product does not build:\n{build.stdout[-5000:]}{build.stderr}")
        name = None
        for line in subprocess.run(["ninja", "-C", self.folder, "-t", "deps"], capture_output=True, text=True,
                                   check=True).stdout.splitlines():  # fmt: skip
            if line and not line[0].isspace():
                name = line.split(":")[0]
            elif line.strip():
                path = os.path.relpath(self.folder / line.strip(), copy)
                self.objects.setdefault(path, []).append(name)
        built = {name for names in self.objects.values() for name in names if self.product(name)}
        built |= {self.program(name) for name in programs} | ({LIBRARY} if programs is WINDOWS else set())
        self.hashes = {name: self.hash(name) for name in built}

    @staticmethod
    def product(name: str) -> bool:
        return name.startswith(FOLDERS) and name.endswith((".o", ".obj"))

    def hash(self, name: str) -> bytes:
        return hashlib.sha256((self.folder / name).read_bytes()).digest()

    def ninja(self, targets: list[str]) -> bool:
        return run(["ninja", "-C", str(self.folder), *targets], BUILD_SECONDS) is None

    def register(self) -> str | None:
        return run(self.command(REGISTER), TEST_SECONDS)

    def command(self, parts: list[str]) -> list[str]:
        return [part.format(build=self.folder, wine=self.wine) for part in parts]

    def test(self, file: str) -> str:
        """Builds the mutated file and tests it."""
        objects = [name for name in self.objects.get(file, []) if self.product(name)]
        if not objects:
            return "equivalent"  # not part of this build
        folder = os.path.dirname(file)
        programs = sorted(self.programs, key=lambda name: -self.kills[folder, name])
        if is_header(file):
            # Quickly built programs come first: few mutants need all of a build.
            programs.sort(key=self.steps)
        elif unbuilt := self.difference(objects):
            return unbuilt
        registered = self.programs is NATIVE
        for name in programs:
            if not self.ninja([name]):
                return "not compiled"
            if not self.is_affected(name):
                continue
            if not registered and (reason := self.register()):
                return f"killed by registration: {reason}"
            registered = True
            failed = self.failed.setdefault((folder, name), [])
            reason = (failed and self.run_tests(name, ",".join(failed))) or self.run_all_tests(name)
            named = reason and re.fullmatch(r"\w+_\w+", reason)
            if named and not self.run_tests(name, reason):
                # On a busy machine, a test of times fails now and then.
                reason = self.run_all_tests(name)
            if reason:
                self.kills[folder, name] += 1
                if named and reason not in failed:
                    failed.append(reason)
                return f"killed by {name}: {reason}"
        return self.difference(objects) or "survived"

    def difference(self, objects: list[str]) -> str | None:
        """Builds the objects. Returns None if one differs from the unchanged product's, otherwise the result."""
        if not self.ninja(objects):
            return "not compiled"
        return "equivalent" if all(self.hash(name) == self.hashes[name] for name in objects) else None

    def steps(self, program: str) -> int:
        """How many build steps the program needs, in tens."""
        plan = subprocess.run(["ninja", "-C", self.folder, "-n", program], capture_output=True, check=True).stdout
        return plan.count(b"\n") // 10

    def run_tests(self, program: str, tests: str, processor_seconds: int = TEST_PROCESSOR_SECONDS) -> str | None:
        limits = self.limits | {resource.RLIMIT_CPU: processor_seconds}
        return run(self.command(self.programs[program]) + [tests], TEST_SECONDS, limits, self.environment)

    def run_all_tests(self, program: str) -> str | None:
        """Runs the quick tests first, which notice most mutants."""
        slow = self.slow[program]
        if not slow:
            return self.run_tests(program, "*")
        quick = "".join(f'~"{test}"' for test in slow)
        return self.run_tests(program, quick, QUICK_PROCESSOR_SECONDS) or self.run_tests(program, ",".join(slow))

    def measure(self, program: str) -> str | None:
        """Finds the program's slow tests. Returns None if all pass, otherwise the reason."""
        durations: Counter = Counter()
        command = self.command(self.programs[program]) + ["--durations", "yes"]
        reason = run(command, TEST_SECONDS, self.limits, self.environment, durations)
        slow = [name for name, duration in durations.items() if duration > QUICK_TEST]
        self.slow[program] = slow if len(slow) < len(durations) else []
        return reason

    def is_affected(self, name: str) -> bool:
        """Whether the program, or the library if it is a client, differs from the unchanged product's."""
        program = self.program(name)
        return self.hash(program) != self.hashes[program] or (
            "/unit/" not in program and self.hash(LIBRARY) != self.hashes[LIBRARY]
        )

    def program(self, name: str) -> str:
        return next(part for part in self.programs[name] if "/tests/" in part).removeprefix("{build}/")

    def clean(self, file: str, since: float) -> None:
        """Deletes what was built from the mutated file."""
        for name in self.objects.get(file, []):
            path = self.folder / name
            if path.exists() and path.stat().st_mtime >= since:
                path.unlink()


class Worker:
    def __init__(self, copy: str):
        self.copy = pathlib.Path(copy)
        self.native = Build(self.copy, "native", NATIVE)
        self.windows = Build(self.copy, "windows", WINDOWS)
        self.windows.register()
        for build in (self.native, self.windows):
            for name in build.programs:
                # A test of times may fail once on a busy machine.
                if reason := build.measure(name) and build.run_all_tests(name):
                    sys.exit(f"The unchanged product fails: {name}: {reason}")

    def test(self, mutant: mutants.Mutant) -> str:
        path = self.copy / mutant.file
        source, times = path.read_text(encoding="utf-8"), path.stat()
        builds = [self.native, self.windows] if mutant.file.startswith(NEUTRAL) else [self.windows]
        started = time.time() - 1
        result = "equivalent"
        try:
            path.write_text(mutant.apply(source), encoding="utf-8")
            for build in builds:
                one = build.test(mutant.file)
                if one != "equivalent":
                    result = one
                if one not in ("equivalent", "survived"):
                    break
        finally:
            path.write_text(source, encoding="utf-8")
            os.utime(path, ns=(times.st_atime_ns, times.st_mtime_ns))
            for build in builds:
                build.clean(mutant.file, started)
        return result


def main() -> None:
    if len(sys.argv) < 3 and sys.argv[1:] != ["check"]:
        sys.exit(__doc__)
    everything = every_mutant()
    equivalent = listed(EQUIVALENT)
    if unknown := equivalent - everything.keys():
        sys.exit("No longer a mutant, in equivalent.txt:\n" + "\n\n".join(sorted(unknown)))
    if sys.argv[1] == "check":
        return
    results: dict[str, str | None]
    if sys.argv[1] == "again":
        copies = sys.argv[2:]
        results = json.loads(RESULTS.read_text(encoding="utf-8"))
        results = {key: result if result != "survived" else None for key, result in results.items()}
    else:
        count, seed, *copies = sys.argv[1:]
        results = dict.fromkeys(random.Random(int(seed)).sample(sorted(everything), int(count)))
    results |= {key: "equivalent" for key in equivalent & results.keys()}
    pending: queue.SimpleQueue = queue.SimpleQueue()
    for key in sorted((key for key, result in results.items() if not result), key=is_header):
        pending.put(key)

    def work(copy: str) -> None:
        worker = Worker(copy)
        while True:
            try:
                key = pending.get_nowait()
            except queue.Empty:
                return
            started = time.time()
            results[key] = worker.test(everything[key])
            RESULTS.write_text(json.dumps(results, indent=1), encoding="utf-8")
            print(f"{results[key]} ({time.time() - started:.0f} s)\n{key}\n", flush=True)

    with concurrent.futures.ThreadPoolExecutor(len(copies)) as pool:
        list(pool.map(work, copies))

    outcomes = Counter(str(result).split()[0] for result in results.values())
    killed, survived = outcomes["killed"], outcomes["survived"]
    if survived:
        print("Survivors:\n")
        print("\n\n".join(key for key, result in sorted(results.items()) if result == "survived") + "\n")
    score = 100 * killed / max(killed + survived, 1)
    print(f"{len(everything)} mutants in the product, {len(results)} sampled: {outcomes['not']} do not compile, "
          f"{outcomes['equivalent']} equivalent, {killed} killed, {survived} survived")  # fmt: skip
    print(f"score: {score:.1f} % (goal: {GOAL} %)")
    sys.exit(score < GOAL)


if __name__ == "__main__":
    main()
