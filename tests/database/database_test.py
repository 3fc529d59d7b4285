#!/usr/bin/env python3
"""Exports simulated jobs of a year, loads them into SQLite and PostgreSQL, and compares each query with sums made from
the jobs themselves.

    database_test.py FOLDER JOBS CATALOGUE PROGRAM...
"""
import contextlib
import os
import shutil
import subprocess
import sys
import time
from decimal import Decimal
from pathlib import Path

from databases import Sqlite, postgres_server
from expected_sums import of_queries
from simulated_jobs import write_jobs

SEED = 20250101
TABLES = ("jobs", "copy_lines", "policy_violations", "logical_printers", "rejected")


# The simulated jobs use a paper that the catalogue does not define.
UNKNOWN_WORD = 1


@contextlib.contextmanager
def work_in(folder, *command):
    """A new folder, which stays after a failure. Yields the command with paths that are valid there."""
    folder = Path(folder).resolve()
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    command = [str(Path(part).resolve()) if Path(part).exists() else part for part in command]
    os.chdir(folder)
    yield command
    os.chdir(folder.parent)
    shutil.rmtree(folder)


def tool(program, *arguments, expected=0):
    done = subprocess.run([*program, *arguments], capture_output=True, check=False, timeout=3000)
    assert done.returncode == expected, f"{arguments}: exit {done.returncode}, {done.stderr.decode('utf-8')[-2000:]}"
    return done.stdout, done.stderr.decode("utf-8")


def comparable(rows):
    """Numbers of any spelling compare as numbers. Databases break ties in different orders."""
    def value(cell):
        try:
            return Decimal(str(cell))
        except ArithmeticError:
            return str(cell)
    return sorted(([value(cell) for cell in row] for row in rows), key=str)


def check_queries(database, jobs):
    for name, expected in of_queries(jobs).items():
        assert expected, name
        rows = database.query(name)
        assert comparable(rows) == comparable(expected), \
            f"{database.name} {name}:\n{comparable(rows)[:5]}\n{comparable(expected)[:5]}"


def check_database(database, export, codes, jobs):
    begin = time.monotonic()
    printed = database.load(export, codes)
    assert f"jobs in the export: {len(jobs)}, in the database: {len(jobs)}, left out because the job is there with " \
        "other contents: 0" in printed, printed
    seconds = time.monotonic() - begin
    check_queries(database, jobs)
    before = database.contents()
    database.load(export, codes)
    assert database.contents() == before, f"{database.name}: loading twice changes the tables"
    assert len(before["copy_lines"]) == sum(len(job["lines"]) for job in jobs)
    return seconds


def check_changed_job(database, program, codes):
    """A job that comes again with other contents is left out, with all its rows."""
    before = database.contents()
    xml = Path("jobs/jobs0000000.xml").read_text(encoding="utf-8").splitlines()[0]
    Path("changed.xml").write_text(xml.replace("<PagesBW>", "<PagesBW>1", 1), encoding="utf-8")
    shutil.rmtree("changed", ignore_errors=True)
    tool(program, "export", "-o", "changed", "changed.xml")
    assert "other contents: 1" in database.load("changed", codes)
    assert database.contents() == before, f"{database.name}: a changed job changes the tables"


def check_damaged(program, count):
    """A damaged tenth is reported and the rest arrives."""
    jobs, bad = write_jobs(Path("damaged_jobs"), count, SEED + 1, records_per_file=max(count // 3, 1), damage=0.1)
    assert bad > count // 20
    _, errors = tool(program, "export", "-o", "damaged", "damaged_jobs", expected=5)
    assert f"{bad} problems" in errors, errors[-500:]
    assert len(Path("damaged/rejected.csv").read_text(encoding="utf-8").splitlines()) == bad + 1
    database = Sqlite("damaged.db")
    database.load("damaged", Path("codes.sqlite.sql").resolve())
    check_queries(database, jobs)
    return bad


def check_continued(program):
    """An export that stops at each damaged record, and continues after its repair, equals an undisturbed one."""
    folder = Path("interrupted_jobs")
    write_jobs(folder, 120, SEED + 2, records_per_file=40)
    tool(program, "export", "-o", "undisturbed", "interrupted_jobs", expected=UNKNOWN_WORD)
    repaired = {path: path.read_text(encoding="utf-8") for path in sorted(folder.glob("jobs*.xml"))}
    for path, text in repaired.items():
        lines = text.splitlines(keepends=True)
        path.write_text("".join(lines[:17]) + lines[17].replace("</JobGuid>", "") + "".join(lines[18:]), encoding="utf-8")
    options = []
    for path, text in repaired.items():
        _, errors = tool(program, "export", "--stop", "-o", "continued", *options, "interrupted_jobs", expected=5)
        assert "The export is partial" in errors and f"{path.name}:18: record 18: " in errors, errors
        assert not list(Path("continued").glob("*.csv")), "a partial table has its name"
        path.write_text(text, encoding="utf-8")
        options = ["--continue"]
    tool(program, "export", "--continue", "-o", "continued", "interrupted_jobs", expected=5)
    for table in TABLES:
        assert Path(f"continued/{table}.csv").read_bytes() == Path(f"undisturbed/{table}.csv").read_bytes(), table
    assert sorted(path.name for path in Path("continued").iterdir()) == sorted(f"{table}.csv" for table in TABLES)


def main(folder, count, catalogue, *program):
    count = int(count)
    with work_in(folder, catalogue, *program) as (catalogue, *program):
        jobs, _ = write_jobs(Path("jobs"), count, SEED, records_per_file=max(count // 4, 1))
        begin = time.monotonic()
        _, errors = tool(program, "export", "-o", "tables", "jobs", expected=UNKNOWN_WORD)
        exported = time.monotonic() - begin
        unknown = sum(line["code"] == 0 for job in jobs for line in job["lines"])
        assert errors.rstrip().endswith(f"the paper size 'House Card': {unknown} rows without its code"), errors
        for name in ("sqlite", "postgresql"):
            Path(f"codes.{name}.sql").write_bytes(tool(program, "catalogue", "--sql", name, catalogue)[0])
        sqlite = Sqlite("jobs.db")
        loaded = [check_database(sqlite, "tables", Path("codes.sqlite.sql").resolve(), jobs)]
        check_changed_job(sqlite, program, Path("codes.sqlite.sql").resolve())
        with postgres_server() as postgres:
            codes = Path("codes.postgresql.sql").resolve()
            loaded.append(check_database(postgres, "tables", codes, jobs))
            check_changed_job(postgres, program, codes)
            months = postgres.select("SELECT count(*) FROM pg_inherits WHERE inhparent = 'jobs'::regclass")
            assert months == [["13"]], months  # and the jobs without a time
        bad = check_damaged(program, count // 4)
        check_continued(program)
    print(f"{count} jobs exported in {exported:.1f} s, loaded by SQLite in {loaded[0]:.1f} s and PostgreSQL in "
          f"{loaded[1]:.1f} s; {bad} damaged records reported")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
