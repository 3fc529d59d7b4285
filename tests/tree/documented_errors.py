#!/usr/bin/env python3
"""Checks the errors in the documents against the Windows header and the tests.

    documented_errors.py WINERROR.H

Each HRESULT name with a number must have the header's number. Each E_FAIL text in docs/errors.md must be expected by a
test.
"""

import re
import sys
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def header_values(path):
    text = Path(path).read_text(encoding="latin-1")
    values = {n: int(v, 16) for n, v in re.findall(r"#define (\w+) _HRESULT_TYPEDEF_\((0x[0-9A-Fa-f]+)\)", text)}
    if len(values) < 1000:
        sys.exit(f"{path} is not the header with the error codes")
    return values


def wrong_numbers(values):
    count = 0
    for page in [*ROOT.glob("*.md"), *(ROOT / "docs").rglob("*.md")]:
        text = page.read_text(encoding="utf-8")
        for name, number in re.findall(r"`([A-Z]\w*_[A-Z_]+\w*)`,? \(?(0x8[0-9A-F]{7})\b", text):
            count += 1
            if name in values and values[name] != int(number, 16):
                yield f"{page.name}: {name} is 0x{values[name]:08X}, not {number}"
            elif name not in values and name != "RPC_S_SERVER_UNAVAILABLE":  # a Win32 error in an HRESULT
                yield f"{page.name}: the header has no {name}"
    if count < 20:
        yield f"only {count} HRESULTs with numbers found in the documents"


def untested_texts():
    page = (ROOT / "docs" / "errors.md").read_text(encoding="utf-8")
    table = re.search(r"^The texts of `E_FAIL`:\n\n(.*?)\n\n", page, re.M | re.S)[1]
    texts = [t for line in table.splitlines()[2:] for t in re.findall(r"`([^`]+)`", line.split("|")[1])]
    tests = "\n".join(p.read_text(encoding="utf-8") for p in (ROOT / "tests").rglob("*")
                      if p.suffix in (".vbs", ".js", ".cpp"))
    expected = [t if " " in t else f"{t} element is missing." for t in texts]
    if len(expected) < 10:
        yield "table of texts in errors.md not found"
    yield from (f"errors.md: no test expects '{text}'" for text in expected if text not in tests)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    problems = [*wrong_numbers(header_values(sys.argv[1])), *untested_texts()]
    if problems:
        sys.exit("\n".join(problems))


if __name__ == "__main__":
    main()
