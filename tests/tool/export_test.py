#!/usr/bin/env python3
"""Exports records that a transcript cannot hold: large, interrupted, damaged or in other encodings.

    export_test.py FOLDER PROGRAM...
"""
import csv
import io
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
from pathlib import Path

MEGABYTE = 1000 * 1000
JOB = ('<PrintJob Version="7.26"><JobGuid>{guid}</JobGuid><UserName>{user}</UserName>'
       "<UserDomainName>OFFICE</UserDomainName><DesktopUserName>desk</DesktopUserName>"
       "<JobTimeLocal>2025-03-04T05:06:07.089</JobTimeLocal><JobTimeUtc>2025-03-04T04:06:07</JobTimeUtc>"
       "<JobName>{name}</JobName><JobContents><JobCopyLines><CopyLine><PaperSize>A4</PaperSize>"
       "<Attributes>Duplex</Attributes><Sheets>1</Sheets><PagesBW>2</PagesBW></CopyLine></JobCopyLines>"
       "<JobPdl>PDF</JobPdl></JobContents></PrintJob>")
OLD_JOB = ('<PrintJob Version="3.5"><JobGuid>old</JobGuid><JobTimeLocal></JobTimeLocal><JobContents><JobCopyLines/>'
           "<JobPdl>PDF</JobPdl></JobContents></PrintJob>")
LINE = ("<CopyLine><PaperSize>A4</PaperSize><PaperDimensions>2100,2970</PaperDimensions>"
        "<Attributes>Duplex,B&amp;W</Attributes><Sheets>1</Sheets><PagesBW>2</PagesBW><PagesColor>0</PagesColor>"
        "<PagesBlank>0</PagesBlank></CopyLine>\n")


def job(number, user="user", name="name"):
    return JOB.format(guid=number, user=user, name=name)


def run(program, *arguments, expected=0, **options):
    done = subprocess.run([*program, "export", *map(str, arguments)], capture_output=True, check=False, timeout=280,
                          **options)
    errors = done.stderr.decode("utf-8").replace("\r\n", "\n")
    assert done.returncode == expected, f"{arguments}: exit {done.returncode}: {errors}"
    return done.stdout.decode("utf-8"), errors


def exported(program, text, expected=0, encoding="utf-8"):
    """The rows and errors of a file with that text."""
    Path("input.xml").write_bytes(text.encode(encoding))
    output, errors = run(program, "--json", "input.xml", expected=expected)
    return [json.loads(line) for line in output.splitlines()], errors


def jobs(rows):
    return [row for row in rows if row["table"] == "jobs"]


def check_separation(program):
    """What may be between records, and what damage does to the others."""
    good = job(1), job(2)
    skipped = ["", "\n", "\r\n\t ", "<?xml version='1.0'?>", "<!DOCTYPE x>", "<!-- <PrintJob> -->", "<![CDATA[<a>]]>"]
    for between in skipped:
        rows, errors = exported(program, between + between.join(good) + between)
        assert [row["job_guid"] for row in jobs(rows)] == ["1", "2"] and not errors, (between, errors)
    damaged = {"text": "input.xml:1: record 2: text outside of a record",
               "</a>": "input.xml:1: record 2: text outside of a record",
               "<a/>": "input.xml:1: record 2: no record has the root element a",
               "<a>\n</a>": "input.xml:1: record 2: no record has the root element a",
               "\n<PrintJob Version='7.26": "input.xml:2: record 2: ",
               "<!-- a comment without an end": "input.xml:1: record 2: text outside of a record",
               job(3)[:-len("</PrintJob>")]: "input.xml:1: record 2: ",
               job(3).replace("</JobName>", ""): "input.xml:1: record 2: End tag does not correspond to JobName"}
    for between, message in damaged.items():
        rows, errors = exported(program, between.join(good), expected=5)
        assert [row["job_guid"] for row in jobs(rows)] == ["1", "2"], (between, rows)
        assert errors.startswith(message) and "1 problem:" in errors, (between, errors)
        assert [row["reason"] for row in rows if row["table"] == "rejected"], between
    rows, errors = exported(program, job(1) + '<PrintJob Version="x"></PrintJob>' + job(2), expected=4)
    assert len(jobs(rows)) == 2 and "record 2: the library refuses it: " in errors, errors
    return len(skipped) + len(damaged)


def check_values(program):
    """Each record starts anew, and a record without times has none."""
    rows, _ = exported(program, job(1) + OLD_JOB)
    new, old = jobs(rows)
    assert (new["user_domain_name"], new["desktop_user_name"]) == ("OFFICE", "desk")
    assert (new["job_time_local"], new["job_time_utc"]) == ("2025-03-04T05:06:07.089", "2025-03-04T04:06:07")
    assert (old["user_domain_name"], old["desktop_user_name"], old["user_name"]) == ("", "", "")
    assert (old["job_time_local"], old["job_time_utc"], old["policy_id"]) == (None, None, None)
    assert jobs(exported(program, OLD_JOB)[0]) == [old], "another run gives the record other values"


def check_texts(program):
    """CSV and JSON hold any text; characters on the border of two pieces that are read survive."""
    text = 'a "quoted", b\r\nc\td 😀 é'
    Path("input.xml").write_bytes(job(1, name=text).encode("utf-8"))
    row, = csv.DictReader(io.StringIO(run(program, "--csv", "input.xml")[0], newline=""), strict=True)
    assert row["job_name"] == text, row["job_name"]
    assert jobs(exported(program, job(1, name=text))[0])[0]["job_name"] == text
    names = ["é😀李" * (1 + number % 7) for number in range(2500)]
    many = "\n".join(job(number, name=name) for number, name in enumerate(names))
    assert len(many.encode("utf-8")) > 1.1 * MEGABYTE
    for encoding in ("utf-8", "utf-8-sig", "utf-16", "utf-16-le", "utf-16-be"):
        rows, errors = exported(program, many, encoding=encoding)
        assert [row["job_name"] for row in jobs(rows)] == names and not errors, (encoding, errors)
    return len(names)


def check_lost_characters(program):
    Path("input.xml").write_bytes((job(1) + job(2, name="é") + job(3)).encode("latin-1"))
    output, errors = run(program, "--json", "input.xml", expected=5)
    assert [row["job_guid"] for row in jobs(map(json.loads, output.splitlines()))] == ["1", "3"]
    assert errors.startswith("input.xml:1: record 2: not valid UTF-8"), errors


def check_output(program):
    """An existing output stays as it is; an interrupted one is partial and can be continued."""
    Path("records").mkdir()
    Path("records/below").mkdir()
    Path("records/below/jobs.xml").write_text("\n".join(map(job, range(3000))), encoding="utf-8")
    run(program, "-o", "whole", "records")
    before = {path: path.read_bytes() for path in Path("whole").iterdir()}
    _, errors = run(program, "-o", "whole", "records", expected=3)
    assert errors == "jobobjects: whole\\jobs.csv exists\nName another folder.\n", errors
    assert {path: path.read_bytes() for path in Path("whole").iterdir()} == before

    def limit_files():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (300 * 1000, 300 * 1000))
    _, errors = run(program, "-o", "full", "records", expected=3, preexec_fn=limit_files)
    assert "full\\jobs.csv.partial: " in errors and "The export is partial." in errors, errors
    assert not list(Path("full").glob("*.csv"))
    _, errors = run(program, "-o", "full", "records", expected=3)
    assert errors.startswith("jobobjects: full has an interrupted export\n"), errors
    progress = Path("full/export.partial")
    intact = progress.read_bytes()
    for value in (b"", b"x", b"9" * 20, b"9" * 400):
        progress.write_bytes(re.sub(rb"\nrecords=\d+\r", b"\nrecords=" + value + b"\r", intact))
        _, errors = run(program, "--continue", "-o", "full", "records", expected=3)
        assert errors == "jobobjects: full\\export.partial: the file is damaged\nExport again into another folder.\n", errors
    progress.write_bytes(intact)
    run(program, "--continue", "-o", "full", "records")
    assert {path.name: path.read_bytes() for path in Path("full").iterdir()} == \
        {path.name: content for path, content in before.items()}

    _, errors = run(program, "-o", "gaps", "records", "missing.xml", expected=3)
    assert "missing.xml: " in errors and "1 problem" in errors, errors
    assert Path("gaps/jobs.csv").read_bytes() == before[Path("whole/jobs.csv")]
    rejected, = csv.DictReader(Path("gaps/rejected.csv").open(encoding="utf-8", newline=""))
    assert (rejected["file"], rejected["line"], rejected["record"]) == ("missing.xml", "", ""), rejected
    Path("empty").mkdir()
    _, errors = run(program, "-o", "none", "empty", expected=3)
    assert errors == "jobobjects: empty: the folder has no *.xml files\n", errors
    assert not Path("none").exists()


def check_standard_input(program):
    with open("records/below/jobs.xml", "rb") as records:
        output, _ = run(program, "--csv", "--table", "copy_lines", "-", stdin=records)
    assert output.encode("utf-8") == Path("whole/copy_lines.csv").read_bytes()


def check_large_record(program):
    """A record of 100 MB between others."""
    with open("large.xml", "w", encoding="utf-8") as file:
        file.write(job(1) + '<JobContents Version="4.0"><JobCopyLines>')
        lines = 100 * MEGABYTE // len(LINE)
        file.writelines(LINE for _ in range(lines))
        file.write("</JobCopyLines><JobPdl>PDF</JobPdl></JobContents>" + job(2))
    output, errors = run(program, "--json", "large.xml")
    rows = [json.loads(line) for line in output.splitlines()]
    assert [row["class"] for row in jobs(rows)] == ["PrintJob", "JobContents", "PrintJob"] and not errors, errors
    assert [row["pages_bw"] for row in rows if row["table"] == "copy_lines"] == [2, 2 * lines, 2]
    os.remove("large.xml")


def main(folder, *program):
    program = [str(Path(part).resolve()) if Path(part).exists() else part for part in program]
    folder = Path(folder).resolve()
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    os.chdir(folder)
    separations = check_separation(program)
    check_values(program)
    names = check_texts(program)
    check_lost_characters(program)
    check_output(program)
    check_standard_input(program)
    check_large_record(program)
    memory = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024 // MEGABYTE
    os.chdir(folder.parent)
    shutil.rmtree(folder)
    print(f"{separations} ways to separate records, {names} names in five encodings, 100 MB with {memory} MB of memory")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
