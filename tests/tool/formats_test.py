#!/usr/bin/env python3
"""Reads the tool's JSON and CSV with Python's own readers, and compares both with each other.

    formats_test.py PROGRAM...
"""
import csv
import io
import json
import subprocess
import sys
import unicodedata
from pathlib import Path

HERE = Path(__file__).resolve().parent
SHORT = {"\n": "\\n", "\r": "\\r", "\t": "\\t"}
FILES = ["findings/*.xml", "shown/*.xml", "records/*.xml", "encodings/*.xml", "../data/golden/*.xml"]


def output(program, *arguments):
    done = subprocess.run([*program, *arguments], cwd=HERE, capture_output=True, timeout=60, check=False)
    return done.stdout.decode("utf-8")


def json_rows(text):
    return [json.loads(line) for line in text.splitlines()]


def csv_rows(text):
    return list(csv.DictReader(io.StringIO(text), strict=True))


def as_csv(value):
    if isinstance(value, str):
        return "".join(SHORT.get(c, f"\\u{ord(c):04X}") if unicodedata.category(c) == "Cc" else c for c in value)
    return "" if value is None else str(value).lower() if isinstance(value, bool) else str(value)


def flat(name, value):
    """The rows of a JSON record as CSV shows them."""
    if isinstance(value, dict):
        for key, child in value.items():
            if key == "Items":
                for index, item in enumerate(child):
                    yield from flat(f"{name}.Items[{index}]", item)
            else:
                yield from flat(f"{name}.{key}", child)
    else:
        yield name, as_csv(value)


def check_findings(program, command, *files):
    rows = json_rows(output(program, command, "--json", *files))
    assert len(rows) > 20, f"{command} has only {len(rows)} rows"
    expected = [{key: as_csv(value) for key, value in row.items()} for row in rows]
    assert csv_rows(output(program, command, "--csv", *files)) == expected, f"{command}: CSV and JSON differ"
    assert {row["severity"] for row in rows} >= {"error", "warning", "result"}
    return len(rows)


def check_records(program):
    records = json_rows(output(program, "show", "--json", *FILES))
    assert len(records) > 40, f"only {len(records)} records"
    expected = [{"file": record["file"], "property": name, "value": value}
                for record in records for name, value in flat(record["class"], record["record"])]
    assert csv_rows(output(program, "show", "--csv", *FILES)) == expected, "show: CSV and JSON differ"
    return len(expected)


def check_check(program):
    rows = json_rows(output(program, "check", "--json"))
    assert [row["value"] for row in rows if row["item"] == "Objects"] == \
        ["10 of 10 classes can be created and write their XML"]
    assert csv_rows(output(program, "check", "--csv")) == \
        [{key: as_csv(value) for key, value in row.items()} for row in rows], "check: CSV and JSON differ"
    return len(rows)


def main(*program):
    counts = [check_findings(program, "validate", *FILES), check_findings(program, "catalogue", "catalogues/*.xml"),
              check_records(program), check_check(program)]
    print(f"{counts} rows agree in both formats")
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
