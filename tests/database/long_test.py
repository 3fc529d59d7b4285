#!/usr/bin/env python3
"""Exports a million records: the speed, the memory, and an export that is killed and continued.

    long_test.py FOLDER PROGRAM...
"""
import filecmp
import os
import resource
import subprocess
import sys
import time
from pathlib import Path

from database_test import SEED, TABLES, UNKNOWN_WORD, tool, work_in
from simulated_jobs import write_jobs

RECORDS_IN_FILE = 20 * 1000
FILES = 50
LEAST_PER_SECOND = 20 * 1000
MOST_MEMORY = 200 * 1000 * 1000


def processor_time(program, *arguments):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    tool(program, *arguments, expected=UNKNOWN_WORD)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, after.ru_maxrss * 1024


def kill_once(program, *arguments):
    """Kills the tool after its second commit."""
    progress = Path("killed/export.partial")
    with subprocess.Popen([*program, *arguments], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                          start_new_session=True) as process:
        deadline = time.monotonic() + 60
        while time.monotonic() < deadline and (not progress.exists() or "records=0\n" in progress.read_text("utf-8")):
            time.sleep(0.2)
        os.killpg(process.pid, 9)
    text = progress.read_text("utf-8")
    assert "To complete them" in text and "complete=0" in text, text
    return text


def main(folder, *program):
    records = FILES * RECORDS_IN_FILE
    with work_in(folder, *program) as program:
        write_jobs(Path("jobs"), RECORDS_IN_FILE, SEED, records_per_file=RECORDS_IN_FILE)
        # The same file again and again: the export does not look for repetitions.
        names = ["jobs\\jobs0000000.xml"] * FILES
        _, small = processor_time(program, "export", "-o", "once", names[0])
        seconds, memory = processor_time(program, "export", "-o", "whole", *names)
        assert len(Path("whole/jobs.csv").read_bytes().splitlines()) == records + 1
        kill_once(program, "export", "-o", "killed", *names)
        tool(program, "export", "--continue", "-o", "killed", *names, expected=UNKNOWN_WORD)
        for table in TABLES:
            assert filecmp.cmp(f"killed/{table}.csv", f"whole/{table}.csv", shallow=False), f"{table} differs"
    print(f"{records} records in {seconds:.1f} s of processor time, {records / seconds:.0f} in a second, with "
          f"{memory / 1e6:.0f} MB of memory ({small / 1e6:.0f} MB for {RECORDS_IN_FILE}); killed and continued")
    assert records / seconds >= LEAST_PER_SECOND, "too slow"
    assert memory <= MOST_MEMORY, "too much memory"
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
