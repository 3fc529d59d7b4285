#!/usr/bin/env python3
"""The sample contents_from_rows.js rebuilds the contents of simulated jobs from the rows of a database.

    way_back_test.py FOLDER CATALOGUE TOOL SCRIPT_HOST...
"""
import shutil
import subprocess
import sys
from pathlib import Path

from databases import SCRIPTS, Sqlite
from database_test import SEED, UNKNOWN_WORD, tool, work_in
from simulated_jobs import write_jobs

SAMPLE = SCRIPTS.parent / "samples" / "contents_from_rows.js"
JOBS = 300


def expected_differences(jobs):
    """Blank pages become black-and-white ones, words return in the catalogue's order, and a paper without a code has no
    line."""
    return {"JobFinishing": sum(job["finishing"] == "Staple,Punch" for job in jobs),
            "number of copy lines": sum(any(line["code"] == 0 for line in job["lines"]) for job in jobs),
            **{name: sum(any(line["blank"] for line in job["lines"]) and all(line["code"] for line in job["lines"])
                         for job in jobs) for name in ("PagesBW", "PagesBlank")}}


def is_kept(job):
    return job["finishing"] != "Staple,Punch" and not any(line["blank"] or line["code"] == 0 for line in job["lines"])


def main(folder, catalogue, count, *command):
    """`count` parts of the command are the tool, the others the script host."""
    with work_in(folder, catalogue, *command) as (catalogue, *command):
        program, host = command[:int(count)], command[int(count):]
        jobs, _ = write_jobs(Path("jobs"), JOBS, SEED)
        tool(program, "export", "-o", "tables", "jobs", expected=UNKNOWN_WORD)
        Path("codes.sql").write_bytes(tool(program, "catalogue", "--sql", "sqlite", catalogue)[0])
        database = Sqlite("jobs.db")
        database.load("tables", Path("codes.sql").resolve())
        rows = database.select("SELECT job_guid, copy_lines, job_originals, job_copies, pdl_code, finishing_mask "
                               "FROM contents_codes")
        Path("rows.txt").write_text("".join("|".join(row) + "\n" for row in rows), encoding="ascii")
        Path("files.txt").write_text("".join(f"jobs\\{path.name}\n" for path in sorted(Path("jobs").iterdir())),
                                     encoding="ascii")
        shutil.copy(SAMPLE, "sample.js")
        done = subprocess.run([*host, "//nologo", "sample.js", "rows.txt", "files.txt"], capture_output=True, timeout=120,
                              check=False)
    lines = done.stdout.decode("ascii").replace("\r", "").splitlines()
    kept = sum(map(is_kept, jobs))
    assert 0 < kept < JOBS
    assert lines[0] == f"{kept} contents equal their records. Properties that differ in the others:", lines
    assert lines[-1] == f"All {JOBS} jobs are rebuilt.", lines
    different = {name.strip(): int(number) for name, number in (line.split(": ") for line in lines[1:-1])}
    assert different == expected_differences(jobs), f"{different}\n{expected_differences(jobs)}"
    print(f"{kept} of {JOBS} contents are equal, the others differ as documented")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
